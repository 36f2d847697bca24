import QtQuick
import Velmo

/// The open panel: the modules beside the notch, the page of the selected one below.
Item {
    id: expanded

    required property NotchContent content

    ModuleBar {
        width: parent.width
        height: expanded.content.notchHeight
        content: expanded.content
    }

    Loader {
        id: page
        x: Theme.gap
        y: expanded.content.notchHeight + Theme.grid
        width: parent.width - 2 * x
        height: parent.height - y - Theme.gap
        source: expanded.content.pageSource
    }

    Binding {
        target: page.item
        property: "page"
        value: expanded.content.page
        when: page.status === Loader.Ready
    }
    Binding {
        target: page.item
        property: "accent"
        value: Theme.accents[expanded.content.accent]
        when: page.status === Loader.Ready
    }
    Binding {
        target: page.item
        property: "watched"
        value: expanded.content.presentation === "expanded"
        when: page.status === Loader.Ready
    }
}
