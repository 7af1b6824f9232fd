# The headers that nearly every source reads, read once for each kind of target: a source then compiles in less
# than half the time. A source still includes all that it uses; the sanitizer builds, which have no precompiled
# headers, refuse one that doesn't.
option(MEVO_PRECOMPILED_HEADERS "Compile the headers of Qt and of the standard library once for all" ON)
if(MEVO_SANITIZE OR MEVO_COVERAGE)
    set(MEVO_PRECOMPILED_HEADERS OFF)
endif()

set(MEVO_STANDARD_HEADERS <algorithm> <array> <atomic> <chrono> <cstring> <deque> <functional> <map> <memory> <mutex>
    <optional> <thread> <utility> <vector>)
set(MEVO_CORE_HEADERS ${MEVO_STANDARD_HEADERS}
    <QByteArray> <QCoreApplication> <QDateTime> <QDebug> <QDir> <QElapsedTimer> <QFile> <QFileInfo> <QHash>
    <QJsonArray> <QJsonDocument> <QJsonObject> <QList> <QObject> <QPointer> <QProcess> <QRegularExpression>
    <QScopedValueRollback> <QSet> <QStandardPaths> <QString> <QStringList> <QTemporaryDir> <QThread> <QTimer> <QUrl>
    <QUrlQuery> <QVector> <QNetworkAccessManager> <QNetworkReply> <QNetworkRequest> <QSslSocket> <QTcpServer>
    <QTcpSocket> <QWebSocket>)
set(MEVO_APP_HEADERS ${MEVO_CORE_HEADERS} <QtGui> <QtWidgets>)

# mevo_precompile(TARGET HEADER...)
function(mevo_precompile target)
    if(MEVO_PRECOMPILED_HEADERS)
        target_precompile_headers(${target} PRIVATE ${ARGN})
    endif()
endfunction()

# Headers for many small targets. The compiler takes them for a target whose options are the same and whose
# definitions are at least those of the carrier, which is why there are several.
# mevo_headers_carrier(NAME LIBS library... HEADERS header...): compiles them for programs.
function(mevo_headers_carrier name)
    cmake_parse_arguments(C "" "" "LIBS;HEADERS" ${ARGN})
    if(MEVO_PRECOMPILED_HEADERS)
        set(source ${CMAKE_BINARY_DIR}/${name}.cpp)
        file(CONFIGURE OUTPUT ${source} CONTENT "int main() {}\n")
        add_executable(${name} EXCLUDE_FROM_ALL ${source})
        set_target_properties(${name} PROPERTIES AUTOMOC OFF AUTORCC OFF)
        target_link_libraries(${name} PRIVATE ${C_LIBS} mevo_warnings)
        target_precompile_headers(${name} PRIVATE ${C_HEADERS})
    endif()
endfunction()

# mevo_reuse_headers(TARGET CARRIER)
function(mevo_reuse_headers target carrier)
    if(MEVO_PRECOMPILED_HEADERS)
        target_precompile_headers(${target} REUSE_FROM ${carrier})
    endif()
endfunction()
