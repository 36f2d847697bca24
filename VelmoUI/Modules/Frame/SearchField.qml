import QtQuick
import Velmo.Design

/// Searches a page. Down leads to what is found, Escape empties the field first.
TextEntry {
    id: search

    /// What is found.
    required property Item results

    /// As if it were typed here.
    function type(letters: string) {
        forceActiveFocus();
        text += letters;
        edited(text);
    }

    placeholder: "Buscar"
    Keys.onDownPressed: results.forceActiveFocus()
    Keys.onEscapePressed: event => {
        event.accepted = text.length > 0;
        if (event.accepted) {
            text = "";
            edited("");
            results.forceActiveFocus();
        }
    }
}
