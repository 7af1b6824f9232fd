// Input methods of the computer under the names of the main window; see InputMethods.

#include "window/MainWindow.h"

#include "state/ThirdPartyMethod.h"
#include "window/InputMethods.h"

void MainWindow::ReadXunFeiIme()
{
    m_inputMethods->readXunFei();
}

int MainWindow::ConfigureXunFeiIme()
{
    return m_inputMethods->configureXunFei();
}

void MainWindow::SetupAsr3()
{
    m_inputMethods->setUp();
}

void MainWindow::StartXunFeiWindow()
{
    m_inputMethods->startXunFeiWindow();
}

QString MainWindow::missingInputMethod(int index) const
{
    return m_inputMethods->missing(index);
}

void MainWindow::DownloadInputMethod()
{
    m_inputMethods->download(LocalUseASR3Index == mevo::thirdPartyNone ? mevo::thirdPartyXunFei
                                                                       : LocalUseASR3Index);
}

void MainWindow::UseXunFeiOfflineOnly(bool always)
{
    m_inputMethods->useOfflineOnly(always);
}

void MainWindow::OpenXunFeiInputSetting()
{
    m_inputMethods->openTool(QStringLiteral("iFlyIMEConfig.exe"));
}

void MainWindow::OpenXunFeiInputHW()
{
    m_inputMethods->openTool(QStringLiteral("iFlyHandwriting.exe"));
}
