import QtQuick
import Velmo.Design
import Velmo.Modules.Mail

/// Connects an account: address, password and, where they can't be known, server and port.
FocusScope {
    id: form

    required property MailAccountsModel model

    function submit() {
        model.connectAccount(password.text, server.text, port.text, username.text);
    }

    implicitHeight: rows.height
    Accessible.role: Accessible.Grouping
    Accessible.name: "Conectar uma conta"

    Connections {
        target: form.model
        function onConnected() {
            address.text = "";
            form.model.address = "";
            password.text = "";
            server.text = "";
            port.text = "";
            username.text = "";
        }
    }

    Column {
        id: rows
        width: parent.width
        spacing: Theme.grid

        Row {
            width: parent.width
            spacing: Theme.grid

            TextEntry {
                id: address
                focus: true
                width: (parent.width - Theme.grid) / 2
                name: "Endereço de e-mail"
                placeholder: "ana@exemplo.com"
                text: form.model.address
                onEdited: text => form.model.address = text
                onAccepted: password.forceActiveFocus(Qt.TabFocusReason)
            }
            TextEntry {
                id: password
                width: (parent.width - Theme.grid) / 2
                name: "Senha"
                placeholder: "Senha de app"
                isSecret: true
                onAccepted: form.submit()
            }
        }
        Row {
            width: parent.width
            visible: form.model.needsServer
            spacing: Theme.grid

            TextEntry {
                id: server
                width: (parent.width - 2 * Theme.grid) * 0.45
                name: "Servidor IMAP"
                placeholder: form.model.guessedHost
                onAccepted: form.submit()
            }
            TextEntry {
                id: port
                width: (parent.width - 2 * Theme.grid) * 0.15
                name: "Porta"
                placeholder: "993"
                onAccepted: form.submit()
            }
            TextEntry {
                id: username
                width: (parent.width - 2 * Theme.grid) * 0.4
                name: "Usuário"
                placeholder: form.model.address
                onAccepted: form.submit()
            }
        }
        Label {
            width: parent.width
            text: form.model.issue.length > 0 ? form.model.issue
                : form.model.address.length > 0 ? form.model.provider + ": " + form.model.hint
                : "Nada é guardado antes de funcionar."
            color: form.model.issue.length > 0 ? Theme.error : Theme.secondaryText
            font.pixelSize: Theme.captionSize
            wrapMode: Text.Wrap
            elide: Text.ElideNone
            Accessible.role: form.model.issue.length > 0 ? Accessible.AlertMessage : Accessible.StaticText
            Accessible.name: text
        }
        Row {
            spacing: Theme.grid

            ActionButton {
                name: form.model.isTesting ? "Testando…" : "Testar e conectar"
                textColor: Theme.accent
                enabled: !form.model.isTesting
                onTriggered: form.submit()
            }
            ActionButton {
                visible: form.model.hasPasswordPage
                name: "Criar senha de app"
                onTriggered: form.model.openPasswordPage()
            }
        }
    }
}
