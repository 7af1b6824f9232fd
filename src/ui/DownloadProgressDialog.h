#pragma once

#include <QProgressDialog>

/// How far a download has come. It stays open until it is hidden: pressing its button or closing it says
/// canceled(), no more.
class DownloadProgressDialog : public QProgressDialog
{
    Q_OBJECT

public:
    DownloadProgressDialog(const QString &title, const QString &cancelText, QWidget *parent = nullptr);

    void start(const QString &label);
    /// In bytes; a total below 1 is not known.
    void move(qint64 received, qint64 total);
};
