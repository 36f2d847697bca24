import QtQuick
import Velmo.Design

/// What will stand on a page that has nothing yet, and below how to start.
Column {
    id: state

    required property string symbol
    required property string title
    required property string detail
    default property alias content: controls.data
    /// Nothing is said of kept data before it has come.
    property bool isOfKept: true
    readonly property bool isKnown: !isOfKept || !DataState.isLoading

    width: Math.min(parent.width, Theme.paneWidth)
    spacing: Theme.grid

    Symbol {
        anchors.horizontalCenter: parent.horizontalCenter
        visible: state.isKnown
        name: state.symbol
        size: Theme.bigNumberSize
        color: Theme.tertiaryText
    }
    Label {
        width: parent.width
        visible: state.isKnown
        horizontalAlignment: Text.AlignHCenter
        text: state.title
        font.pixelSize: Theme.titleSize
        font.weight: Font.Medium
    }
    Label {
        width: parent.width
        visible: state.isKnown
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        elide: Text.ElideNone
        text: state.detail
        color: Theme.secondaryText
    }
    Row {
        id: controls
        anchors.horizontalCenter: parent.horizontalCenter
        visible: state.isKnown && children.length > 0
        topPadding: Theme.grid
        spacing: 2 * Theme.grid
    }
}
