import QtQuick
import Velmo.Design
import Velmo.Modules.Tools

/// Says of which archive a password is needed and why, and takes it.
FocusScope {
    id: tool

    required property ToolsPageModel page

    function use() {
        page.usePassword(password.text);
        password.text = "";
    }

    focus: true

    Label {
        id: title
        width: parent.width - skip.width - Theme.gap
        height: Theme.controlHeight
        elide: Text.ElideMiddle
        text: tool.page.passwordTitle
        font.weight: Font.Medium
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    ActionButton {
        id: skip
        anchors.right: parent.right
        name: "Deixar como está"
        onTriggered: tool.page.declinePassword()
    }
    Column {
        y: Theme.controlHeight + Theme.gap
        width: parent.width
        spacing: Theme.grid

        Label {
            width: parent.width
            wrapMode: Text.Wrap
            text: tool.page.passwordQuestion
            color: Theme.warning
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }
        Row {
            spacing: Theme.grid

            TextEntry {
                id: password
                focus: true
                isSecret: true
                name: "Senha do arquivo"
                placeholder: "Senha"
                onAccepted: tool.use()
                Component.onCompleted: forceActiveFocus()
            }
            ActionButton {
                enabled: password.text.length > 0
                opacity: enabled ? 1 : 0.4
                name: "Abrir"
                idleColor: Theme.surfaceSelected
                onTriggered: tool.use()
            }
        }
    }
}
