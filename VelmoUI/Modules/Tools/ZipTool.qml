import QtQuick
import Velmo.Design
import Velmo.Modules.Tools

/// The name of the archive to make.
ToolForm {
    id: tool

    fields: [
        TextEntry {
            id: name
            width: 2 * Theme.fieldWidth
            focus: true
            name: "Nome do arquivo compactado"
            placeholder: "Nome"
            Component.onCompleted: {
                text = tool.page.zipName;
                selectAll();
                forceActiveFocus();
            }
            onEdited: text => tool.page.zipName = text
            onAccepted: tool.page.zip()
        },
        Label {
            anchors.left: name.right
            anchors.leftMargin: 2 * Theme.grid
            height: Theme.controlHeight
            text: ".zip"
            color: Theme.secondaryText
        },
        ActionButton {
            id: apply
            anchors.right: parent.right
            enabled: tool.page.canZip && !tool.page.isRunning
            opacity: enabled ? 1 : 0.4
            name: "Compactar"
            idleColor: Theme.surfaceSelected
            onTriggered: tool.page.zip()
        }
    ]

    Label {
        width: parent.width
        wrapMode: Text.Wrap
        text: tool.page.zipDetail
        color: tool.page.canZip ? Theme.secondaryText : Theme.error
    }
}
