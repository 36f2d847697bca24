import QtQuick
import Velmo

/// Rows that belong together, on one surface.
Column {
    id: section

    property string title: ""
    default property alias content: rows.data

    width: parent ? parent.width : 0

    SectionTitle {
        visible: text.length > 0
        text: section.title
    }

    Rectangle {
        width: parent.width
        height: rows.height
        radius: Theme.cardRadius
        color: Theme.card
        border.width: Theme.isLight ? 1 : 0
        border.color: Theme.hairline

        Column {
            id: rows
            width: parent.width
        }
    }
}
