import QtQuick
import Velmo.Design
import Velmo.Modules.Frame

/// The tiles of a page in a row that scrolls sideways, with the page's menu. Typing on them searches.
CardGrid {
    id: grid

    /// What a screen reader says.
    required property string name
    required property TilePage page
    required property SearchField search
    /// The page reports many changes; only its own may move the keyboard.
    readonly property bool hasTiles: page.hasTiles

    function openMenu(tile: Item, at: point) {
        if (page.hasSelection)
            menu.open(tile.mapToItem(menu.parent, at));
    }

    visible: hasTiles
    focus: hasTiles
    rows: 1
    interactive: false
    keyNavigationEnabled: false
    cacheBuffer: 0
    model: page.items
    currentIndex: page.currentIndex
    Accessible.role: Accessible.List
    Accessible.name: name
    Keys.onPressed: event => {
        const isText = event.text > " " && event.key !== Qt.Key_Delete && !(event.modifiers & (Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier));
        event.accepted = true;
        if (page.handleKey(event.key, event.modifiers))
            return;
        if (menu.isCalledBy(event) && currentItem)
            openMenu(currentItem, Qt.point(currentItem.width / 2, currentItem.height / 4));
        else if (isText && hasTiles)
            search.type(event.text);
        else
            event.accepted = false;
    }

    Label {
        parent: grid
        anchors.centerIn: parent
        visible: !grid.page.isEmpty && !grid.page.hasFound
        text: "Nada encontrado"
        color: Theme.secondaryText
    }
    ContextMenu {
        id: menu
        parent: grid.parent
        model: grid.page.commands
        onChosen: id => grid.page.run(id)
        onVisibleChanged: if (!visible)
            grid.forceActiveFocus()
    }
}
