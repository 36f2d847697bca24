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

    /// For people who want more: a larger type, and more rows where they fit.
    property bool isLarge: false

    readonly property color shape: "#000000"
    readonly property color shapeEdge: "#00000000"
    readonly property color window: isLight ? "#f2f2f5" : "#101010"
    readonly property color text: isLight ? "#e0000000" : "#ffffff"
    readonly property color secondaryText: isLight ? "#a6000000" : "#b4b4b4"
    /// Not on what is pressed or selected, where it is too faint.
    readonly property color tertiaryText: isLight ? "#8f000000" : "#8e8e8e"
    /// Cards, and what the pointer does to them and to controls without a ground of their own.
    readonly property color surface: isLight ? "#ffffff" : "#1a1a1a"
    readonly property color surfaceHover: isLight ? "#0f000000" : "#242424"
    readonly property color surfacePressed: isLight ? "#1a000000" : "#2e2e2e"
    readonly property color surfaceSelected: isLight ? "#d4d4d9" : "#3a3a3a"
    /// Where something is written or pressed.
    readonly property color field: isLight ? "#ededf0" : "#242424"
    readonly property color hairline: isLight ? "#1f000000" : "#2a2a2a"
    /// Over other content, so not to be seen through.
    readonly property color raised: isLight ? "#ffffff" : "#242424"
    readonly property color raisedEdge: isLight ? hairline : surfaceSelected
    /// A switch that is off, the rest of a slider's track: to be seen as the controls they are.
    readonly property color off: isLight ? "#7d7d82" : "#6e6e6e"
    /// What slides on a switch or a slider.
    readonly property color knob: "#ffffff"
    readonly property color knobEdge: isLight ? "#33000000" : "#00000000"
    readonly property real hoverShare: 0.04
    readonly property real pressedShare: 0.08

    /// An opaque colour, so much nearer to the text's.
    function raise(base: color, share: real): color {
        return Qt.tint(base, isLight ? Qt.rgba(0, 0, 0, share) : Qt.rgba(1, 1, 1, share));
    }

    readonly property color success: isLight ? "#166a3c" : "#4cd58a"
    readonly property color error: isLight ? "#b8241c" : "#ff6b62"
    readonly property color warning: isLight ? "#944a00" : "#ff9f43"
    readonly property var accents: ({
        "silver": "#c9ced6",
        "yellow": "#ffd54a",
        "orange": "#ff9f43",
        "pink": "#ff6b9a",
        "purple": "#b58cff",
        "blue": "#5aa9ff",
        "green": "#4cd58a"
    })
    /// The same, dark enough for a light window and its fields.
    readonly property var lightAccents: ({
        "silver": "#5a6372",
        "yellow": "#7a5d00",
        "orange": "#944a00",
        "pink": "#b82a59",
        "purple": "#6d40c9",
        "blue": "#1a5fb0",
        "green": "#166a3c"
    })
    readonly property color accent: (isLight ? lightAccents : accents)[accentName]
    /// Of what went well, went wrong or is only said.
    function feedbackColor(style: int): color {
        return style === Feedback.Success ? success : style === Feedback.Error ? error : secondaryText;
    }

    readonly property string face: "Inter"
    readonly property string symbolFace: "Material Icons"
    readonly property int captionSize: isLarge ? 12 : 11
    readonly property int smallSize: isLarge ? 13 : 12
    readonly property int bodySize: isLarge ? 15 : 13
    readonly property int titleSize: isLarge ? 17 : 15
    readonly property int numberSize: isLarge ? 22 : 20
    readonly property int bigNumberSize: isLarge ? 32 : 28

    readonly property int grid: 4
    readonly property int gap: 8
    /// From the panel's edge to its cards, whose corners share a middle with the panel's.
    readonly property int margin: 8
    readonly property int cardPadding: 12
    readonly property int panelRadius: 28
    readonly property int cardRadius: panelRadius - margin
    readonly property int controlRadius: cardRadius - cardPadding
    readonly property int controlHeight: 28
    /// From a card's edge to a button that is only a symbol: its glyph stands where texts do.
    readonly property int iconInset: cardPadding - (controlHeight - smallSymbolSize) / 2
    /// The least height of a tile with two lines and the gap below it.
    readonly property int leastRow: rowHeight + gap
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
    readonly property int shadowCorner: panelRadius
    readonly property real shadowOpacity: 0.45
}
