# tallowby_precompile_headers(<target>)
#
# The target takes the headers that most files include from one precompiled copy, which the first target makes: one for
# all of src/ and bench/, and one for the tests that also has GoogleTest. A file still includes what it uses: the `tidy` preset
# builds without precompiled headers.

set(TALLOWBY_PRECOMPILED_HEADERS
  <algorithm> <array> <atomic> <chrono> <cmath> <condition_variable> <deque> <functional> <map> <memory> <mutex>
  <optional> <span> <string> <thread> <unordered_map> <unordered_set> <utility> <variant> <vector>
  <QAbstractListModel> <QAccessible> <QByteArray> <QColor> <QCoreApplication> <QDateTime> <QFont> <QGuiApplication>
  <QHash> <QImage> <QJsonDocument> <QJsonObject> <QKeyEvent> <QList> <QObject> <QPainter> <QPointer> <QPointF>
  <QQmlEngine> <QQuickItem> <QQuickWindow> <QRectF> <QSettings> <QString> <QStringList> <QUrl> <QUuid> <QVariant>)

function(tallowby_precompile_headers target)
  set(headers ${TALLOWBY_PRECOMPILED_HEADERS})
  set(maker tallowby_platform)
  if(target MATCHES "_test$" OR target STREQUAL tallowby_test_support)
    list(APPEND headers <gmock/gmock.h> <gtest/gtest.h>)
    set(maker tallowby_test_support)
  endif()
  if(target STREQUAL maker)
    target_precompile_headers(${target} PRIVATE ${headers})
  else()
    target_precompile_headers(${target} REUSE_FROM ${maker})
  endif()
endfunction()
