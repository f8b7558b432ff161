#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>

namespace velloran::tests {

/// How often a signal was sent on a bus, by whomever.
class SignalCounter : public QObject {
    Q_OBJECT

public:
    SignalCounter(QDBusConnection bus, const QString& interface, const QString& name) {
        bus.connect(QString(), QString(), interface, name, this, SLOT(tell()));
    }

    int count = 0;

private slots:

    void tell() { ++count; }
};

} // namespace velloran::tests
