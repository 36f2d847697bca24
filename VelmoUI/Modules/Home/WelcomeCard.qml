import QtQuick
import Velmo.Design
import Velmo.Modules.Home

/// Greets whoever is here for the first time.
CardSurface {
    id: welcome

    required property HomePageModel page

    Accessible.role: Accessible.Grouping
    Accessible.name: title.text

    Label {
        id: title
        x: Theme.cardPadding
        y: Theme.cardPadding
        text: "Bem-vindo ao Orvane"
        font.pixelSize: Theme.titleSize
        font.weight: Font.DemiBold
    }

    Column {
        x: Theme.cardPadding
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.grid

        Label {
            text: "Ao passar o cursor"
            color: Theme.secondaryText
            font.pixelSize: Theme.smallSize
        }
        Picker {
            name: "Ao passar o cursor"
            options: ["Nada", "Prévia", "Abrir"]
            current: welcome.page.hoverBehavior
            onPicked: index => welcome.page.hoverBehavior = index
        }
    }

    Row {
        anchors.right: parent.right
        anchors.rightMargin: Theme.cardPadding
        y: parent.height - height - Theme.cardPadding
        spacing: 2 * Theme.grid

        ActionButton {
            name: "Personalizar…"
            idleColor: "transparent"
            textColor: Theme.secondaryText
            onTriggered: welcome.page.openSettings()
        }
        ActionButton {
            name: "Começar"
            idleColor: Theme.surfaceSelected
            onTriggered: welcome.page.finishOnboarding()
        }
    }
}
