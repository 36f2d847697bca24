import QtQuick
import Velmo.Design

/// What can be done with what the pointer or the keyboard is on, in columns over a page. Its model
/// has the roles `id`, `title`, `symbol` and `shortcut`. Made when it is first wanted.
FocusScope {
    id: menu

    property QtObject model: null
    /// Where it opens, in the page.
    property point origin

    signal chosen(string id)

    /// Whether that key asks for a menu.
    function isCalledBy(event: KeyEvent): bool {
        return event.key === Qt.Key_Menu || (event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier);
    }

    function open(at: point) {
        origin = at;
        body.active = true;
        visible = true;
        forceActiveFocus();
    }

    function close() {
        if (!visible)
            return;
        visible = false;
        focus = false;
    }

    anchors.fill: parent
    visible: false
    z: 2
    Accessible.role: Accessible.PopupMenu
    Accessible.name: "Menu"
    Keys.onEscapePressed: close()

    MenuPresence {
        onDismissed: menu.close()
    }

    Loader {
        id: body
        anchors.fill: parent
        active: false
        focus: true

        sourceComponent: FocusScope {
            id: sheet

            function step(by: int) {
                for (let i = 0; i < entries.count; ++i) {
                    if (entries.itemAt(i).activeFocus) {
                        entries.itemAt((i + by + entries.count) % entries.count).forceActiveFocus();
                        return;
                    }
                }
            }

            focus: true
            onVisibleChanged: if (visible)
                entries.itemAt(0)?.forceActiveFocus()
            Keys.onUpPressed: sheet.step(-1)
            Keys.onDownPressed: sheet.step(1)
            Keys.onLeftPressed: sheet.step(-grid.rows)
            Keys.onRightPressed: sheet.step(grid.rows)

            MouseArea {
                anchors.fill: parent
                acceptedButtons: Qt.LeftButton | Qt.RightButton
                onPressed: menu.close()
            }

            Rectangle {
                x: Math.max(0, Math.min(menu.origin.x, menu.width - width))
                y: Math.max(0, Math.min(menu.origin.y, menu.height - height))
                width: grid.width + 2 * Theme.grid
                height: grid.height + 2 * Theme.grid
                radius: Theme.controlRadius + Theme.grid
                color: Theme.raised
                border.width: 1
                border.color: Theme.raisedEdge

                Grid {
                    id: grid
                    x: Theme.grid
                    y: Theme.grid
                    flow: Grid.TopToBottom
                    rows: Math.max(1, Math.min(entries.count, Math.floor((menu.height - 2 * Theme.grid) / Theme.controlHeight)))

                    Repeater {
                        id: entries
                        model: menu.model

                        delegate: ControlSurface {
                            id: entry

                            required property string id
                            required property string title
                            required property string symbol
                            required property string shortcut

                            name: title
                            hoverColor: Theme.surfaceSelected
                            width: Theme.fieldWidth
                            height: Theme.controlHeight
                            Accessible.role: Accessible.MenuItem
                            onTriggered: {
                                const id = entry.id;
                                menu.close();
                                menu.chosen(id);
                            }

                            Symbol {
                                id: glyph
                                x: 2 * Theme.grid
                                height: parent.height
                                name: entry.symbol
                                size: Theme.smallSymbolSize
                                color: Theme.secondaryText
                            }
                            Label {
                                anchors.left: glyph.right
                                anchors.leftMargin: 2 * Theme.grid
                                anchors.right: keys.left
                                height: parent.height
                                text: entry.title
                                font.pixelSize: Theme.smallSize
                                Accessible.ignored: true
                            }
                            Label {
                                id: keys
                                anchors.right: parent.right
                                anchors.rightMargin: 2 * Theme.grid
                                height: parent.height
                                text: entry.shortcut
                                color: Theme.secondaryText
                                font.pixelSize: Theme.captionSize
                                Accessible.ignored: true
                            }
                        }
                    }
                }
            }
        }
    }
}
