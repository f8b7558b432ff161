import QtQuick
import QtQuick.Layouts

/// The label at the head of a row, as wide as those of the other rows of its card.
BodyText {
    id: root

    /// The width of the column of labels; a larger system font may need more.
    required property int columnWidth

    Layout.preferredWidth: Math.max(root.columnWidth, Math.ceil(root.implicitWidth))
    size: 13.5
    weight: Font.Medium
    color: Theme.textSecondary
}
