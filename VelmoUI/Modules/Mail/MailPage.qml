import QtQuick
import Velmo.Design
import Velmo.Modules.Mail

/// The messages of all accounts, and the one that is read.
FocusScope {
    id: view

    required property MailPageModel page

    Keys.onPressed: event => {
        const isUndo = event.matches(StandardKey.Undo) && view.page.undoTitle.length > 0;
        const isRefresh = event.matches(StandardKey.Refresh);
        event.accepted = isUndo || isRefresh;
        if (isUndo)
            view.page.undo();
        else if (isRefresh)
            view.page.refresh();
    }

    EmptyState {
        anchors.verticalCenter: parent.verticalCenter
        visible: form.visible
        width: form.x - Theme.gap
        symbol: "envelope.fill"
        title: "Conecte uma conta de e-mail"
        detail: "As mensagens novas e os códigos de acesso aparecem aqui."
    }
    MailAccountForm {
        id: form
        x: Math.round(parent.width * 0.42)
        width: parent.width - x - Theme.gap
        anchors.verticalCenter: parent.verticalCenter
        visible: !view.page.accounts.hasAccounts
        focus: visible
        model: view.page.accounts
    }

    MailList {
        id: list
        visible: view.page.accounts.hasAccounts
        focus: visible
        width: Math.round((parent.width - Theme.gap) * 0.42)
        height: parent.height
        page: view.page
    }
    MailSheet {
        x: list.width + Theme.gap
        visible: list.visible
        width: parent.width - x
        height: parent.height
        page: view.page
    }
}
