import QtQuick
import Velmo.Design
import Velmo.Modules.Frame

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

    CardSurface {
        width: parent.width
        height: rows.height

        Column {
            id: rows
            width: parent.width
        }
    }
}
