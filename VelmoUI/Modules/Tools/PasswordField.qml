import QtQuick
import Velmo

/// Says why a password is needed, and takes it.
Column {
    id: field

    required property ToolsPageModel page

    spacing: Theme.grid

    function use() {
        page.usePassword(password.text);
        password.text = "";
    }

    Label {
        text: field.page !== null ? field.page.passwordQuestion : ""
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
            onAccepted: field.use()
            Component.onCompleted: forceActiveFocus()
        }
        ActionButton {
            enabled: password.text.length > 0
            opacity: enabled ? 1 : 0.4
            name: "Abrir"
            idleColor: Theme.surfaceSelected
            onTriggered: field.use()
        }
    }
}
