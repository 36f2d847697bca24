import QtQuick
import Velmo.Design

/// The menu of a card or of something on one.
ContextMenu {
    id: menu

    /// Runs what is chosen: its `run` takes the command's id.
    property var subject: null
    /// What had the keyboard before, while it is there.
    property Item user: null

    function openFor(item: Item, at: point, commands: QtObject) {
        model = commands;
        subject = item;
        user = Window.activeFocusItem;
        open(item.mapToItem(parent, at));
    }

    onChosen: id => subject?.run(id)
    onVisibleChanged: if (!visible)
        (user ?? parent).forceActiveFocus()
}
