import QtQuick
import Velloran

/// A hairline, lying or standing.
RoundedFace {
    implicitWidth: 1
    implicitHeight: 1
    fill: Theme.cardStroke
}
