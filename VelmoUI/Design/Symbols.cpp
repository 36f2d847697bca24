#include "VelmoUI/Design/Symbols.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace velmo {

namespace {

struct Glyph {
    std::u16string_view name;
    std::u16string_view ligature;
};

/// Sorted by name.
constexpr std::array glyphs = {
    Glyph{u"accessibility", u"accessibility"},
    Glyph{u"applepencil", u"create"},
    Glyph{u"applewatch", u"watch"},
    Glyph{u"archivebox", u"unarchive"},
    Glyph{u"arrow.counterclockwise", u"replay"},
    Glyph{u"arrow.left", u"arrow_back"},
    Glyph{u"arrow.up.forward.app", u"open_in_new"},
    Glyph{u"arrow.uturn.backward", u"undo"},
    Glyph{u"arrowshape.turn.up.left", u"reply"},
    Glyph{u"av.remote", u"settings_remote"},
    Glyph{u"battery.100", u"battery_full"},
    Glyph{u"battery.100.bolt", u"battery_charging_full"},
    Glyph{u"battery.unknown", u"battery_unknown"},
    Glyph{u"bell.badge", u"notifications_active"},
    Glyph{u"brain.head.profile", u"psychology"},
    Glyph{u"cable.connector", u"settings_ethernet"},
    Glyph{u"calendar", u"calendar_today"},
    Glyph{u"camera", u"photo_camera"},
    Glyph{u"checklist", u"checklist"},
    Glyph{u"checkmark", u"check"},
    Glyph{u"checkmark.circle.fill", u"check_circle"},
    Glyph{u"chevron.left", u"chevron_left"},
    Glyph{u"chevron.right", u"chevron_right"},
    Glyph{u"circle", u"radio_button_unchecked"},
    Glyph{u"computermouse", u"mouse"},
    Glyph{u"cpu", u"memory"},
    Glyph{u"cup.and.saucer.fill", u"local_cafe"},
    Glyph{u"desktopcomputer", u"computer"},
    Glyph{u"display", u"desktop_windows"},
    Glyph{u"doc", u"description"},
    Glyph{u"doc.fill", u"insert_drive_file"},
    Glyph{u"doc.on.clipboard", u"content_paste"},
    Glyph{u"doc.on.doc", u"content_copy"},
    Glyph{u"doc.zipper", u"folder_zip"},
    Glyph{u"dot.radiowaves.left.and.right", u"bluetooth"},
    Glyph{u"envelope.badge.shield.half.filled", u"mark_email_unread"},
    Glyph{u"envelope.fill", u"email"},
    Glyph{u"exclamationmark.lock.fill", u"lock_clock"},
    Glyph{u"exclamationmark.triangle.fill", u"warning"},
    Glyph{u"eye", u"visibility"},
    Glyph{u"eye.slash", u"visibility_off"},
    Glyph{u"folder", u"folder_open"},
    Glyph{u"folder.badge.gearshape", u"category"},
    Glyph{u"folder.badge.plus", u"drive_file_move"},
    Glyph{u"folder.fill", u"folder"},
    Glyph{u"forward.end.fill", u"skip_next"},
    Glyph{u"gamecontroller", u"sports_esports"},
    Glyph{u"gauge.medium", u"speed"},
    Glyph{u"gearshape", u"settings"},
    Glyph{u"gearshape.2", u"miscellaneous_services"},
    Glyph{u"hand.point.up.left", u"touch_app"},
    Glyph{u"hand.raised", u"pan_tool"},
    Glyph{u"headphones", u"headphones"},
    Glyph{u"hifispeaker", u"speaker"},
    Glyph{u"house.fill", u"home"},
    Glyph{u"info.circle", u"info_outline"},
    Glyph{u"info.circle.fill", u"info"},
    Glyph{u"internaldrive", u"storage"},
    Glyph{u"ipad", u"tablet"},
    Glyph{u"keyboard", u"keyboard"},
    Glyph{u"line.3.horizontal", u"drag_indicator"},
    Glyph{u"link", u"link"},
    Glyph{u"list.bullet", u"list"},
    Glyph{u"lock.fill", u"lock"},
    Glyph{u"lock.open", u"lock_open"},
    Glyph{u"magnifyingglass", u"search"},
    Glyph{u"memorychip", u"developer_board"},
    Glyph{u"mic", u"mic"},
    Glyph{u"music.note", u"music_note"},
    Glyph{u"network", u"router"},
    Glyph{u"paintbrush", u"brush"},
    Glyph{u"paintpalette", u"palette"},
    Glyph{u"pause.fill", u"pause"},
    Glyph{u"pencil", u"edit"},
    Glyph{u"photo", u"image"},
    Glyph{u"pin.fill", u"push_pin"},
    Glyph{u"play.fill", u"play_arrow"},
    Glyph{u"plus", u"add"},
    Glyph{u"plus.square.on.square", u"library_add"},
    Glyph{u"powerplug", u"power"},
    Glyph{u"printer", u"print"},
    Glyph{u"record.circle", u"radio_button_checked"},
    Glyph{u"rectangle.dashed.badge.record", u"screenshot"},
    Glyph{u"scanner", u"scanner"},
    Glyph{u"smartphone", u"smartphone"},
    Glyph{u"square.and.arrow.down", u"save_alt"},
    Glyph{u"square.and.arrow.up", u"ios_share"},
    Glyph{u"square.and.pencil", u"edit_note"},
    Glyph{u"square.grid.2x2", u"grid_view"},
    Glyph{u"star", u"star_border"},
    Glyph{u"star.fill", u"star"},
    Glyph{u"stop.fill", u"stop"},
    Glyph{u"tag", u"local_offer"},
    Glyph{u"text.alignleft", u"notes"},
    Glyph{u"timer", u"timer"},
    Glyph{u"trash", u"delete_outline"},
    Glyph{u"tray.and.arrow.down", u"move_to_inbox"},
    Glyph{u"tray.and.arrow.up", u"outbox"},
    Glyph{u"tray.full", u"inbox"},
    Glyph{u"video", u"videocam"},
    Glyph{u"video.fill", u"videocam"},
    Glyph{u"wand.and.stars", u"auto_fix_high"},
    Glyph{u"waveform.path.ecg", u"timeline"},
    Glyph{u"wifi", u"wifi"},
    Glyph{u"wifi.slash", u"wifi_off"},
    Glyph{u"wrench.and.screwdriver", u"handyman"},
    Glyph{u"xmark", u"close"},
    Glyph{u"xmark.circle", u"highlight_off"},
    Glyph{u"xmark.circle.fill", u"cancel"},
};
static_assert(std::ranges::is_sorted(glyphs, {}, &Glyph::name));

} // namespace

QString Symbols::glyph(const QString &name)
{
    const std::u16string_view wanted(reinterpret_cast<const char16_t *>(name.utf16()),
                                     std::size_t(name.size()));
    const auto found = std::ranges::lower_bound(glyphs, wanted, {}, &Glyph::name);
    const bool isKnown = found != glyphs.end() && found->name == wanted;
    const std::u16string_view ligature = isKnown ? found->ligature : u"fiber_manual_record";
    return QString::fromUtf16(ligature.data(), qsizetype(ligature.size()));
}

} // namespace velmo
