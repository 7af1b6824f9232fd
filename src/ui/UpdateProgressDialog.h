#pragma once

#include <QProgressDialog>

/// How far the download of an update has come. It stays open until it is hidden: pressing its button or
/// closing it says canceled(), no more.
class UpdateProgressDialog : public QProgressDialog
{
    Q_OBJECT

public:
    explicit UpdateProgressDialog(QWidget *parent = nullptr);

    void start(const QString &fileName);
    /// In bytes; a total below 1 is not known.
    void move(qint64 received, qint64 total);
};
