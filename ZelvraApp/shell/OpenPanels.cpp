#include "ZelvraApp/shell/OpenPanels.h"

#include "ZelvraApp/platform/FilePaths.h"

#include <QStandardPaths>

#include <utility>

namespace zelvra {

QStringList OpenPanels::movieFilters() {
    return {QStringLiteral("Movies (*.mov *.mp4 *.m4v *.MOV *.MP4 *.M4V)")};
}

QUrl OpenPanels::firstFolder() {
    return QUrl::fromLocalFile(QStandardPaths::writableLocation(QStandardPaths::MoviesLocation));
}

void OpenPanels::ask(const OpenPanelRequest& request,
                     std::function<void(const std::filesystem::path&)> chosen) {
    request_ = request;
    chosen_ = std::move(chosen);
    Q_EMIT asked();
    Q_EMIT request.choice == OpenPanelRequest::Choice::movie ? movieAsked() : folderAsked();
}

void OpenPanels::choose(const QUrl& url) {
    const auto chosen = std::exchange(chosen_, nullptr);
    if (chosen && url.isLocalFile()) {
        chosen(pathOf(url.toLocalFile()));
    }
}

} // namespace zelvra
