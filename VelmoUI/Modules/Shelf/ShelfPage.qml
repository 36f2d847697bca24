import QtQuick

Item {
    property QtObject page
    property bool watched
}
