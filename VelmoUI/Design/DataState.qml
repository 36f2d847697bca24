pragma Singleton

import QtQuick

/// Whether what pages show isn't all that was kept. None of them says that it has nothing, then.
QtObject {
    property bool isLoading: false
}
