import QtQuick

/// The large word for the status. A new word fades in where the old one fades out; assistive tools hear it at once.
BodyText {
    id: root

    required property string headline

    text: root.headline
    size: 26
    weight: Font.Bold
    wrapMode: Text.WordWrap

    Accessible.role: Accessible.AlertMessage
    Accessible.name: root.headline

    Behavior on text {
        SequentialAnimation {
            EaseInOut {
                target: root
                property: "opacity"
                to: 0
                seconds: 0.075
            }
            PropertyAction {}
            EaseInOut {
                target: root
                property: "opacity"
                to: 1
                seconds: 0.075
            }
        }
    }
}
