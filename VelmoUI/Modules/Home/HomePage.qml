import QtQuick
import Velmo.Design
import Velmo.Modules.Frame
import Velmo.Modules.Home

/// Cards that show what matters, on as many pages as they need.
FocusScope {
    id: home

    required property HomePageModel page

    focus: true
    // The loader sizes it before it gives it its page.
    onWidthChanged: page?.setWidth(width, Theme.gap)
    Component.onCompleted: page.setWidth(width, Theme.gap)

    Item {
        id: pages
        width: parent.width
        height: parent.height - (dotRow.visible ? dotRow.height : 0)
        clip: home.page.pageCount > 1
        visible: !home.page.picking

        Row {
            x: -home.page.pageIndex * pages.width
            height: parent.height

            Behavior on x {
                NumberAnimation {
                    duration: Theme.glide
                    easing.type: Easing.OutCubic
                }
            }

            Repeater {
                model: home.page.pageCount

                delegate: Item {
                    id: sheet

                    required property int index
                    readonly property bool isShown: index === home.page.pageIndex

                    width: pages.width
                    height: pages.height
                    enabled: isShown

                    Row {
                        anchors.horizontalCenter: parent.horizontalCenter
                        height: parent.height
                        spacing: Theme.gap

                        WelcomeCard {
                            visible: sheet.index === 0 && home.page.hasWelcome
                            width: home.page.welcomeWidth
                            height: parent.height
                            page: home.page
                        }

                        Repeater {
                            model: home.page.cards

                            delegate: Loader {
                                id: card

                                required property string id
                                required property string title
                                required property int page
                                required property url source
                                required property ModulePage content
                                required property string module
                                required property var model // `width` is the item's own

                                active: page === sheet.index
                                visible: active
                                width: model.width
                                height: pages.height
                                Component.onCompleted: if (active)
                                    load()
                                onActiveChanged: if (active)
                                    load()

                                function load() {
                                    setSource(source, {
                                        "title": title,
                                        "card": content
                                    });
                                }

                                function openMenu(at: point) {
                                    home.page.askAbout(id);
                                    menu.openFor(card, at, home.page.commands);
                                }
                                function run(command: string) {
                                    home.page.run(command, id);
                                }

                                onLoaded: {
                                    const favorites = item as FavoritesCard;
                                    if (favorites)
                                        favorites.menu = menu;
                                }
                                Keys.onPressed: event => {
                                    event.accepted = menu.isCalledBy(event);
                                    if (event.accepted)
                                        openMenu(Qt.point(width / 2, height / 4));
                                }

                                // Below what the card shows, which may have menus of its own.
                                MouseArea {
                                    anchors.fill: parent
                                    z: -1
                                    acceptedButtons: Qt.RightButton
                                    onPressed: mouse => card.openMenu(Qt.point(mouse.x, mouse.y))
                                }

                                Connections {
                                    target: card.item
                                    ignoreUnknownSignals: true // a card may open nothing
                                    function onOpened() {
                                        home.page.openModule(card.module);
                                    }
                                }
                            }
                        }
                    }
                }
            }
        }

        WheelHandler {
            acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
            onWheel: event => home.page.turnWheel(event.angleDelta.y)
        }
        WheelHandler {
            acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
            orientation: Qt.Horizontal
            onWheel: event => home.page.turnWheel(event.angleDelta.x)
        }
    }

    // It reaches into the panel's margin, as far as the panel's round corners leave it to be seen.
    Row {
        id: dotRow
        anchors.horizontalCenter: parent.horizontalCenter
        y: parent.height - height + Theme.grid
        visible: !home.page.picking && dots.count > 1

        Repeater {
            id: dots
            model: home.page.pageCount > 1 ? home.page.pageCount : 0

            delegate: ControlSurface {
                id: dot

                required property int index

                name: "Página " + (index + 1)
                width: Theme.controlHeight
                height: Theme.smallSymbolSize
                surfaceHeight: Theme.gap
                radius: surfaceHeight / 2
                Accessible.selected: index === home.page.pageIndex
                onTriggered: home.page.pageIndex = index

                Rectangle {
                    anchors.centerIn: parent
                    width: Theme.grid
                    height: Theme.grid
                    radius: width / 2
                    color: dot.index === home.page.pageIndex ? Theme.text : Theme.tertiaryText
                }
            }
        }
    }

    // An empty Home says how to begin.
    Column {
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width
        visible: home.page.isEmpty
        spacing: 2 * Theme.grid

        Row {
            id: tips
            width: parent.width
            spacing: Theme.gap

            Repeater {
                id: lessons
                model: home.page.tips

                delegate: Column {
                    id: lesson

                    required property string symbol
                    required property string title
                    required property string detail

                    width: (tips.width - (lessons.count - 1) * tips.spacing) / lessons.count
                    spacing: Theme.grid / 2

                    Symbol {
                        width: parent.width
                        name: lesson.symbol
                        color: Theme.secondaryText
                    }
                    Label {
                        width: parent.width
                        horizontalAlignment: Text.AlignHCenter
                        text: lesson.title
                        font.weight: Font.Medium
                    }
                    Label {
                        width: parent.width
                        horizontalAlignment: Text.AlignHCenter
                        text: lesson.detail
                        color: Theme.secondaryText
                        font.pixelSize: Theme.captionSize
                        wrapMode: Text.Wrap
                        maximumLineCount: 2
                    }
                }
            }
        }
        ActionButton {
            anchors.horizontalCenter: parent.horizontalCenter
            name: "Escolher cartões"
            onTriggered: home.page.chooseCards()
        }
    }

    Loader {
        anchors.fill: parent
        active: home.page.picking !== null
        focus: active
        sourceComponent: FavoritePicker {
            favorites: home.page.picking
            onDone: home.page.picking.stopPicking()
        }
    }

    HomeMenu {
        id: menu
    }
}
