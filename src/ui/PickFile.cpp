#include "ui/PickFile.h"

#include "ui/Ask.h"

#include <QFileDialog>

namespace mevo {

namespace {

/// Not one of QFileDialog's functions that do all: theirs stands on the stack, which its parent must not
/// delete.
QString pick(const QPointer<QFileDialog> &dialog)
{
    const bool accepted = runDialog(dialog.data());
    if (dialog.isNull()) {
        return {};
    }
    const QString path = accepted ? dialog->selectedFiles().value(0) : QString();
    delete dialog;
    return path;
}

} // namespace

QString pickFile(QWidget *parent, const QString &title, const QString &filter)
{
    auto *dialog = new QFileDialog(parent, title, QString(), filter);
    dialog->setFileMode(QFileDialog::ExistingFile);
    return pick(dialog);
}

QString pickNewFile(QWidget *parent, const QString &title, const QString &proposed, const QString &filter)
{
    auto *dialog = new QFileDialog(parent, title, QString(), filter);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->selectFile(proposed);
    return pick(dialog);
}

QString pickFolder(QWidget *parent, const QString &title, const QString &start)
{
    auto *dialog = new QFileDialog(parent, title, start);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    return pick(dialog);
}

} // namespace mevo
