pragma Singleton

import QtQuick

/// Colours, type, spacing and motion: the only place of such numbers.
QtObject {
    readonly property color shape: "#000000"
    readonly property color text: "#ebffffff"
    readonly property color secondaryText: "#99ffffff"
    readonly property color tertiaryText: "#66ffffff"
    readonly property color surface: "#0fffffff"
    readonly property color surfaceHover: "#1affffff"
    readonly property color surfacePressed: "#24ffffff"
    readonly property color surfaceSelected: "#29ffffff"
    readonly property color hairline: "#14ffffff"

    readonly property color success: "#4cd58a"
    readonly property color error: "#ff6b62"
    readonly property color warning: "#ff9f43"
    readonly property var accents: ({
        "silver": "#c9ced6",
        "yellow": "#ffd54a",
        "orange": "#ff9f43",
        "pink": "#ff6b9a",
        "purple": "#b58cff",
        "blue": "#5aa9ff",
        "green": "#4cd58a"
    })
    /// Colour by the style of an event; info takes the plain text's.
    readonly property var styles: ({
        "success": success,
        "error": error,
        "info": secondaryText
    })

    readonly property string face: "Inter"
    readonly property string symbolFace: "Material Icons"
    readonly property int captionSize: 11
    readonly property int smallSize: 12
    readonly property int bodySize: 13
    readonly property int titleSize: 15
    readonly property int numberSize: 20
    readonly property int bigNumberSize: 28

    readonly property int grid: 4
    readonly property int gap: 10
    readonly property int cardPadding: 12
    readonly property int cardRadius: 14
    readonly property int controlRadius: 8
    readonly property int controlHeight: 28
    readonly property int symbolSize: 20

    /// Milliseconds at normal pace.
    readonly property int contentDelay: 120
    readonly property int fadeIn: 160
    readonly property int fadeOut: 80
    readonly property int hover: 100
    readonly property int contentRise: 6

    readonly property int shadowBlur: 32
    readonly property int shadowDrop: 8
    readonly property real shadowOpacity: 0.45
}
