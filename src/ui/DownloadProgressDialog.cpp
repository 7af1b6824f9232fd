#include "ui/DownloadProgressDialog.h"

#include "ui/Ask.h"

namespace {

constexpr int steps = 1000;

} // namespace

DownloadProgressDialog::DownloadProgressDialog(const QString &title, const QString &cancelText,
                                               QWidget *parent)
    : QProgressDialog(parent)
{
    setWindowTitle(title);
    setCancelButtonText(cancelText);
    setAutoClose(false);
    setAutoReset(false);
    setMinimumDuration(0);
    setWindowFlag(Qt::WindowStaysOnTopHint);
    setAttribute(Qt::WA_ShowWithoutActivating); // an Escape that is typed elsewhere must not cancel it
    disconnect(this, &QProgressDialog::canceled, this, &QProgressDialog::cancel);
}

void DownloadProgressDialog::start(const QString &label)
{
    setLabelText(label);
    if (!isVisible() && parentWidget() != nullptr) {
        mevo::placeBeside(*this, *parentWidget());
    }
    show();
    raise();
}

void DownloadProgressDialog::move(qint64 received, qint64 total)
{
    setMaximum(total > 0 ? steps : 0); // 0 shows that something happens, not how far it is
    setValue(total > 0 ? static_cast<int>(received * steps / total) : 0);
}
