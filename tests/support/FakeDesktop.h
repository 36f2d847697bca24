#pragma once

#include "VelmoCore/Storage/AppPaths.h"
#include "VelmoSystem/Ports/FileViewer.h"
#include "VelmoSystem/Ports/Platform.h"

#include "tests/support/FakeCalendarStore.h"
#include "tests/support/FakeDevices.h"
#include "tests/support/FakeDisplays.h"
#include "tests/support/FakeDownloader.h"
#include "tests/support/FakeDragPasteboard.h"
#include "tests/support/FakeHotKeyGrabber.h"
#include "tests/support/FakeMeetings.h"
#include "tests/support/FakePanelWindow.h"
#include "tests/support/FakePointer.h"
#include "tests/support/FakeServers.h"
#include "tests/support/FakeWorkspace.h"
#include "tests/support/ManualScheduler.h"
#include "tests/support/TemporaryFolder.h"

namespace velmo {

/// Every port without a desktop behind it, around one screen of 1600 x 900 points.
class FakeDesktop {
public:
    struct Viewer : FileViewer {
        void reveal(const std::vector<QUrl> &files) override { revealed = files; }
        void open(const QUrl &url) override { opened.push_back(url); }

        std::vector<QUrl> revealed;
        std::vector<QUrl> opened;
    };

    /// Screens stand side by side in the order of their ids, the first one is the primary one.
    static ScreenDescriptor screen(DisplayID id)
    {
        const Rect frame{1600.0 * (id - 1), -900, 1600, 900};
        return {.displayID = id,
                .name = u"Tela %1"_qs.arg(id),
                .frame = frame,
                .visibleFrame = frame,
                .isPrimary = id == 1};
    }

    AppPaths paths() const
    {
        return {folder.path(u"data"_qs), folder.path(u"cache"_qs), folder.path(u"temporary"_qs)};
    }

    void movePointer(Point point)
    {
        displays.mouse = point;
        pointer.moveTo(point);
    }

    TemporaryFolder folder;
    ManualScheduler scheduler;
    FakeDisplays displays{{screen(1)}};
    FakePointer pointer;
    FakeDragPasteboard dragPasteboard;
    FakeHotKeyGrabber hotKeyGrabber;
    FakeWorkspace workspace;
    FakePanelWindowFactory panelWindows;
    Viewer fileViewer;
    FakeAppearance appearance;
    FakePower power;
    FakeAccessories accessories;
    FakeNetwork network;
    FakeBluetooth bluetooth;
    FakeLoad load;
    FakeApplications applications;
    FakePermissions permissions;
    FakeNotifications notifications;
    FakeSounds sounds;
    FakeLoginItem loginItem;
    FakeStatusArea statusArea;
    FakePasteboard pasteboard;
    FakeShare share;
    FakeFrontApplication frontApplication;
    FakeThumbnailer thumbnailer;
    FakeServers servers{scheduler};
    FakeDownloader downloads{scheduler};
    FakeCalendarStore calendars{scheduler};
    FakeBrowserWindows browserWindows;
    FakeCaptureDevices captureDevices;
    FakeWebPageButton webPageButton;
    const Platform platform{
        scheduler,    displays,   pointer,      dragPasteboard, hotKeyGrabber,  workspace,
        panelWindows, fileViewer, appearance,   power,          accessories,    network,
        bluetooth,    load,       applications, permissions,    notifications,  sounds,
        loginItem,    statusArea, pasteboard,   share,          thumbnailer,    frontApplication,
        servers,      downloads,  calendars,    browserWindows, captureDevices, webPageButton};
};

} // namespace velmo
