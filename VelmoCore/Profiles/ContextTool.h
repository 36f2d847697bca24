#pragma once

#include "VelmoCore/Foundation/Json.h"

#include <boost/describe.hpp>

namespace velmo {

/// A tool of Orvane's own that can stand beside the notch.
enum class ContextTool {
    captureRegion,
    captureWindow,
    colorPicker,
    clipboard,
    shelf,
    newNote,
    notes,
    copyURL,
    saveLink,
    finderActions,
    compressSelection,
    timer,
    nextMeeting,
    cameraPreview,
    recordScreen,
    search,
    webShareScreen,
};
BOOST_DESCRIBE_ENUM(ContextTool, captureRegion, captureWindow, colorPicker, clipboard, shelf,
                    newNote, notes, copyURL, saveLink, finderActions, compressSelection, timer,
                    nextMeeting, cameraPreview, recordScreen, search, webShareScreen)

/// Tolerates the word of an earlier version: "recipes" is `finderActions`.
template <>
struct JsonCoding<ContextTool> {
    static void write(JsonWriter &writer, ContextTool tool);
    static ContextTool read(const boost::json::value &json);
};

/// What kind of application is in front.
enum class AppContextCategory { design, browser, finder, code, meeting, writing, general };
BOOST_DESCRIBE_ENUM(AppContextCategory, design, browser, finder, code, meeting, writing, general)

} // namespace velmo
