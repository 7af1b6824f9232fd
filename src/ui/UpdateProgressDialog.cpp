#include "ui/UpdateProgressDialog.h"

namespace {

constexpr int steps = 1000;

} // namespace

UpdateProgressDialog::UpdateProgressDialog(QWidget *parent)
    : QProgressDialog(parent)
{
    setWindowTitle(tr("灵犀听写在线更新"));
    setCancelButtonText(tr("取消下载"));
    setAutoClose(false);
    setAutoReset(false);
    setMinimumDuration(0);
    setWindowFlag(Qt::WindowStaysOnTopHint);
    disconnect(this, &QProgressDialog::canceled, this, &QProgressDialog::cancel);
}

void UpdateProgressDialog::start(const QString &fileName)
{
    setLabelText(tr("\r\n               正在下载更新文件:%1,请稍候......               \r").arg(fileName));
    show();
    raise();
}

void UpdateProgressDialog::move(qint64 received, qint64 total)
{
    setMaximum(total > 0 ? steps : 0); // 0 shows that something happens, not how far it is
    setValue(total > 0 ? static_cast<int>(received * steps / total) : 0);
}
