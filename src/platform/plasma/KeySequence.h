#pragma once

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QList>

namespace velloran::platform::plasma {

/// Keys that are pressed one after the other, each a number of the toolkit's with its modifiers. Those of this program
/// are one key; on the bus they have room for four.
struct KeySequence {
    int key = 0;

    friend bool operator==(const KeySequence&, const KeySequence&) = default;
};

using KeySequenceList = QList<KeySequence>;

/// Which of the sequences that have something in common with another are meant: 0 is those that equal it.
struct MatchType {
    int value = 0;
};

inline QDBusArgument& operator<<(QDBusArgument& argument, const KeySequence& sequence) {
    argument.beginStructure();
    argument << QList<int>{sequence.key, 0, 0, 0};
    argument.endStructure();
    return argument;
}

inline const QDBusArgument& operator>>(const QDBusArgument& argument, KeySequence& sequence) {
    QList<int> keys;
    argument.beginStructure();
    argument >> keys;
    argument.endStructure();
    sequence.key = keys.value(0);
    return argument;
}

inline QDBusArgument& operator<<(QDBusArgument& argument, const MatchType& type) {
    argument.beginStructure();
    argument << type.value;
    argument.endStructure();
    return argument;
}

inline const QDBusArgument& operator>>(const QDBusArgument& argument, MatchType& type) {
    argument.beginStructure();
    argument >> type.value;
    argument.endStructure();
    return argument;
}

/// Makes them known to the toolkit, before the first is sent.
inline void registerKeySequences() {
    qDBusRegisterMetaType<KeySequence>();
    qDBusRegisterMetaType<KeySequenceList>();
    qDBusRegisterMetaType<MatchType>();
}

/// Those in a value that came over the bus, without empty ones; none in one of any other kind.
inline KeySequenceList keySequencesIn(const QVariant& value) {
    const auto argument = value.value<QDBusArgument>();
    KeySequenceList found = argument.currentSignature() == QLatin1String("a(ai)")
                                ? qdbus_cast<KeySequenceList>(argument)
                                : KeySequenceList();
    found.removeAll(KeySequence());
    return found;
}

} // namespace velloran::platform::plasma

Q_DECLARE_METATYPE(velloran::platform::plasma::KeySequence)
Q_DECLARE_METATYPE(velloran::platform::plasma::MatchType)
