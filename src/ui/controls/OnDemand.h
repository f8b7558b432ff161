#pragma once

#include <QObject>
#include <QPointer>
#include <QQmlComponent>
#include <QQmlParserStatus>
#include <QUrl>
#include <QVariant>
#include <QtQmlIntegration>

namespace velloran {

/// Makes one thing when it is first needed, and keeps it from then on: what the window can do without until then costs
/// nothing when it opens. An item comes last among the children of the item that this object belongs to.
///
/// What it makes is written down as its child or, so that not even its type is read before, in a file of its own.
class OnDemand : public QObject, public QQmlParserStatus {
    Q_OBJECT
    QML_ELEMENT
    Q_INTERFACES(QQmlParserStatus)
    Q_CLASSINFO("DefaultProperty", "content")
    /// Setting this makes it, at once; clearing it changes nothing.
    Q_PROPERTY(bool wanted READ isWanted WRITE setWanted NOTIFY wantedChanged FINAL)
    Q_PROPERTY(QQmlComponent* content MEMBER content_ FINAL)
    /// The file, in place of `content`.
    Q_PROPERTY(QUrl source MEMBER source_ FINAL)
    /// What the file requires.
    Q_PROPERTY(QVariantMap properties MEMBER properties_ FINAL)
    /// Null before it is made.
    Q_PROPERTY(QObject* made READ made NOTIFY madeChanged FINAL)

public:
    explicit OnDemand(QObject* parent = nullptr);

    void classBegin() override {}

    void componentComplete() override;

    [[nodiscard]] bool isWanted() const { return isWanted_; }

    void setWanted(bool isWanted);

    [[nodiscard]] QObject* made() const { return made_; }

    /// What it makes; made now at the latest, with these properties in place of its own unless there are none.
    Q_INVOKABLE QVariant get(const QVariantMap& properties = {});

signals:
    void wantedChanged();
    void madeChanged();

private:
    void make();
    void makeFrom(QQmlComponent& component, QQmlContext& context);

    QQmlComponent* content_ = nullptr;
    QUrl source_;
    QVariantMap properties_;
    QPointer<QObject> made_;
    bool isWanted_ = false;
    bool isComplete_ = false;
};

} // namespace velloran
