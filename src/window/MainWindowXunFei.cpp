// XunFei's streaming recognition as the main window carries it: what the recorder sends, what a message
// brings.

#include "window/MainWindow.h"

#include "audio/AudioRecorder.h"
#include "engines/XunFeiStream.h"
#include "ui/CPatialResultDialog.h"

#include <utility>

void MainWindow::ConnectXFWebApi()
{
    if (m_xunFei) {
        m_xunFei->ConnectXFWebApi();
    }
}

void MainWindow::onXFWebApiConnected()
{
    m_xunFei->onXFWebApiConnected();
}

void MainWindow::onXFWebApiDisconnected()
{
    m_xunFei->onXFWebApiDisconnected();
}

void MainWindow::onXFWebApiMessageReceived(QString message)
{
    m_xunFei->onXFWebApiMessageReceived(std::move(message));
}

void MainWindow::openXunFeiSocket()
{
    ConnectXFWebApi();
}

bool MainWindow::xunFeiConnected() const
{
    return XFWebSocketConnected;
}

void MainWindow::sendXunFeiFrame(const QByteArray &block, int status)
{
    if (m_xunFei) {
        m_xunFei->sendFrame(block, status);
    }
}

void MainWindow::closeXunFeiSocket()
{
    if (m_xunFei) {
        m_xunFei->close();
    }
}

bool MainWindow::dynamicCorrection() const
{
    return m_recorder != nullptr && m_recorder->EnableXunFeiWebApiDwa;
}

void MainWindow::handleXunFeiText(const QString &text)
{
    if (!hasTornDown()) {
        m_pipeline.HandleRecResult(text);
    }
}

void MainWindow::showXunFeiText(const QString &text)
{
    if (!hasTornDown()) {
        showRecText(text);
    }
}

void MainWindow::showPartialText(const QString &text)
{
    XFPartialDlg->setText(text);
    if (!XFPartialDlg->isVisible()) {
        XFPartialDlg->show();
    }
}

void MainWindow::hidePartialText()
{
    XFPartialDlg->hide();
}

void MainWindow::showXunFeiLanguage()
{
    showLanguages();
}

void MainWindow::flushXunFeiCount()
{
    updateRecCountsTimerOut();
}

void MainWindow::closeXunFeiRecording()
{
    if (m_recorder != nullptr) {
        m_recorder->DeleyCloseMicTimer();
    }
}
