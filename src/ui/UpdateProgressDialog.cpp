#include "ui/UpdateProgressDialog.h"

UpdateProgressDialog::UpdateProgressDialog(QWidget *parent)
    : DownloadProgressDialog(tr("灵犀听写在线更新"), tr("取消下载"), parent)
{
}

void UpdateProgressDialog::start(const QString &fileName)
{
    DownloadProgressDialog::start(
        tr("\r\n               正在下载更新文件:%1,请稍候......               \r").arg(fileName));
}
