import QtQuick
import Velmo.Design
import Velmo.Settings

/// The sections of a pane that the modules bring.
Column {
    id: parts

    required property SettingsWindowModel window
    required property string pane

    spacing: 2 * Theme.gap

    Repeater {
        model: parts.window.sections(parts.pane)

        delegate: Loader {
            required property url source
            required property QtObject content

            width: parts.width
            Component.onCompleted: {
                const properties = {
                    "settings": parts.window.settings
                };
                if (content)
                    properties.model = content;
                setSource(source, properties);
            }
        }
    }
}
