# What nearly every file includes, and is slow to read. A group of targets shares one: those that link
# Qt Core, those that link Qt Quick, and the tests.
set(ORVANE_CORE_HEADERS
    <QObject>
    <QString>
    <QUrl>
    <algorithm>
    <boost/describe.hpp>
    <boost/json.hpp>
    <boost/mp11.hpp>
    <chrono>
    <functional>
    <map>
    <memory>
    <optional>
    <thread>
    <variant>
    <vector>)
set(ORVANE_QUICK_HEADERS ${ORVANE_CORE_HEADERS} <QAbstractListModel> <QQuickItem> <QtQml/qqmlregistration.h>)
set(ORVANE_TEST_HEADERS ${ORVANE_CORE_HEADERS} <gmock/gmock.h> <gtest/gtest.h>)
