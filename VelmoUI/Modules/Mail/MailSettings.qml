import QtQuick
import Velmo.Design
import Velmo.Modules.Frame
import Velmo.Modules.Mail

/// The accounts, and what is shown and heard of new mail.
SettingsSection {
    id: section

    required property MailAccountsModel model
    required property var settings

    title: "E-mail"

    Repeater {
        model: section.model.accounts

        delegate: SettingRow {
            id: row

            required property string id
            required property string email
            required property string state
            required property bool hasProblem
            required property string removal

            title: email
            detail: hasProblem ? "" : state
            issue: hasProblem ? state : ""

            ConfirmButton {
                name: "Remover"
                question: "Desconectar a conta e esquecer a senha?"
                confirmName: "Remover"
                onConfirmed: section.model.remove(row.id)
            }
        }
    }
    Item {
        width: parent.width
        height: form.height + 2 * Theme.cardPadding

        MailAccountForm {
            id: form
            x: Theme.cardPadding
            y: Theme.cardPadding
            width: parent.width - 2 * x
            model: section.model
        }
    }
    SettingRow {
        title: "Avisar de mensagens novas"

        Toggle {
            name: "Avisar de mensagens novas"
            checked: section.settings.mailNotifications
            onToggled: checked => section.settings.mailNotifications = checked
        }
    }
    SettingRow {
        title: "Mostrar o começo da mensagem"

        Toggle {
            name: "Mostrar o começo da mensagem"
            checked: section.settings.mailShowsPreview
            onToggled: checked => section.settings.mailShowsPreview = checked
        }
    }
    SettingRow {
        title: "Som ao chegar"

        Toggle {
            name: "Som ao chegar"
            checked: section.settings.mailSound
            onToggled: checked => section.settings.mailSound = checked
        }
    }
}
