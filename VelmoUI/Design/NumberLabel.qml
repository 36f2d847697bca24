import QtQuick
import Velmo.Design

/// A number that changes: digits are equally wide, and only those that change fade over.
Item {
    id: number

    required property string text
    property color color: Theme.text
    property int size: Theme.bodySize
    readonly property font font: Qt.font({
        family: Theme.face,
        pixelSize: size,
        weight: Font.Medium
    })

    implicitWidth: row.width
    implicitHeight: row.height
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    TextMetrics {
        id: digit
        font: number.font
        text: "0"
    }

    Row {
        id: row

        Repeater {
            model: number.text.length

            delegate: Text {
                id: character

                required property int index
                readonly property string wanted: number.text.charAt(index)
                readonly property bool isDigit: text >= "0" && text <= "9"

                width: isDigit ? Math.round(digit.advanceWidth) : implicitWidth
                text: wanted
                color: number.color
                font: number.font
                textFormat: Text.PlainText
                horizontalAlignment: Text.AlignHCenter
                Accessible.ignored: true

                Behavior on text {
                    enabled: character.visible
                    SequentialAnimation {
                        NumberAnimation {
                            target: character
                            property: "opacity"
                            to: 0
                            duration: Theme.fadeOut
                        }
                        PropertyAction {}
                        NumberAnimation {
                            target: character
                            property: "opacity"
                            to: 1
                            duration: Theme.fadeOut
                        }
                    }
                }
            }
        }
    }
}
