pragma Singleton

import QtQuick

/// Colours, type, spacing and motion: the only place of such numbers.
QtObject {
    id: theme

    /// The user's choices, set by whose windows these are. A panel is dark, always: it is the notch.
    property bool isLight: false
    property string accentName: "silver"
    property bool animated: true
    property bool reducedMotion: false
    property real pace: 1

    readonly property color shape: "#000000"
    readonly property color shapeEdge: "#00000000"
    readonly property color window: isLight ? "#f0f0f3" : "#1c1c1f"
    readonly property color text: isLight ? "#e0000000" : "#ebffffff"
    readonly property color secondaryText: isLight ? "#99000000" : "#99ffffff"
    readonly property color tertiaryText: isLight ? "#66000000" : "#66ffffff"
    readonly property color surface: isLight ? "#0a000000" : "#0fffffff"
    readonly property color surfaceHover: isLight ? "#12000000" : "#1affffff"
    readonly property color surfacePressed: isLight ? "#1a000000" : "#24ffffff"
    readonly property color surfaceSelected: isLight ? "#1f000000" : "#29ffffff"
    /// Under the rows of a window; what is on black needs no ground of its own.
    readonly property color card: isLight ? "#ffffff" : surface
    readonly property color hairline: isLight ? "#14000000" : "#14ffffff"
    /// Over other content, so not to be seen through.
    readonly property color raised: isLight ? "#ffffff" : "#2b2b2e"
    /// What slides on a switch or a slider.
    readonly property color knob: "#ffffff"
    readonly property color knobEdge: isLight ? "#33000000" : "#00000000"

    readonly property color success: isLight ? "#1f8a50" : "#4cd58a"
    readonly property color error: isLight ? "#cf2e25" : "#ff6b62"
    readonly property color warning: isLight ? "#b35a00" : "#ff9f43"
    readonly property var accents: ({
        "silver": "#c9ced6",
        "yellow": "#ffd54a",
        "orange": "#ff9f43",
        "pink": "#ff6b9a",
        "purple": "#b58cff",
        "blue": "#5aa9ff",
        "green": "#4cd58a"
    })
    /// The same, dark enough for a light window.
    readonly property var lightAccents: ({
        "silver": "#6d7684",
        "yellow": "#9a7500",
        "orange": "#b85f0b",
        "pink": "#cc3468",
        "purple": "#7a4bdb",
        "blue": "#1f6fc9",
        "green": "#1f8a50"
    })
    readonly property color accent: (isLight ? lightAccents : accents)[accentName]
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
    readonly property int rowHeight: 44
    readonly property int switchWidth: 36
    readonly property int switchHeight: 20
    readonly property int sliderWidth: 180
    readonly property int fieldWidth: 200
    readonly property int sidebarWidth: 190
    readonly property int paneWidth: 620
    readonly property int searchWidth: 160
    readonly property int railWidth: 148
    readonly property int clipWidth: 178
    readonly property int tabWidth: 30
    readonly property int markSize: 12
    readonly property int smallSymbolSize: 16
    readonly property int symbolSize: 20
    readonly property int tileSymbolSize: 40
    readonly property int leastTileWidth: 128
    readonly property int thumbnailSize: 112
    readonly property int barHeight: 4
    readonly property int ringWidth: 2
    readonly property int fadeWidth: 32

    /// Milliseconds at the user's pace.
    readonly property int contentDelay: animated ? 120 * pace : 0
    readonly property int fadeIn: animated ? 160 * pace : 0
    readonly property int fadeOut: animated ? 80 * pace : 0
    readonly property int hover: animated ? 100 : 0
    /// For what changes place or length; fades go on where the user wants less motion.
    readonly property int glide: animated && !reducedMotion ? 160 * pace : 0
    readonly property int tipDelay: 500
    readonly property int contentRise: reducedMotion ? 0 : 6

    readonly property int shadowBlur: 32
    readonly property int shadowDrop: 8
    readonly property int shadowCorner: 28
    readonly property real shadowOpacity: 0.45
}
