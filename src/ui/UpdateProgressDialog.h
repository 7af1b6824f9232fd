#pragma once

#include "ui/DownloadProgressDialog.h"

/// How far the download of an update has come.
class UpdateProgressDialog : public DownloadProgressDialog
{
    Q_OBJECT

public:
    explicit UpdateProgressDialog(QWidget *parent = nullptr);

    void start(const QString &fileName);
};
