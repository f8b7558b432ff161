import QtQuick

Rectangle {
    width: 920
    height: 1000

    Text {
        anchors.centerIn: parent
        text: "Bare window"
    }
}
