// Prints where the application's files of a program in this folder stand.
#include "base/ApplicationFiles.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    std::puts(mevo::appFolder().toLocal8Bit().constData());
    return 0;
}
