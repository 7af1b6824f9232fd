// XunFei's streaming recognition as the main window carries it: what the recorder sends, what a message
// brings.

#include "window/MainWindow.h"

#include "audio/AudioRecorder.h"
#include "engines/XunFeiStream.h"
#include "ui/CPatialResultDialog.h"

#include <QTimer>

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
    endXunFeiSession(); // one socket, one session: the one before has nothing more to say
    m_xunFeiSession = NewestSession;
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
    endXunFeiSession();
}

void MainWindow::giveXunFeiUp()
{
    if (m_xunFei) {
        m_xunFei->giveUp();
    }
    if (XFWebSocket == nullptr || !XFWebSocketConnected) { // else a late answer may still come
        endXunFeiSession();
    }
}

void MainWindow::finishXunFeiEarly()
{
    if (m_xunFei) {
        m_xunFei->finishEarly();
    }
    endXunFeiSession();
}

void MainWindow::letXunFeiGo()
{
    const int session = std::exchange(m_xunFeiSession, 0);
    if (session == 0 || !m_xunFei) {
        return;
    }
    m_xunFei->letGo([this, session](const QString &text, bool words) {
        QTimer::singleShot(0, this, [this, session, text, words] {
            if (!text.isEmpty()) {
                deliverRecognised(session, {text, words});
            }
            endSession(session);
            flushXunFeiCount();
        });
    });
}

void MainWindow::endXunFeiSession()
{
    endSession(std::exchange(m_xunFeiSession, 0));
}

bool MainWindow::dynamicCorrection() const
{
    return m_recorder != nullptr && m_recorder->EnableXunFeiWebApiDwa;
}

void MainWindow::handleXunFeiText(const QString &text)
{
    deliverRecognised(m_xunFeiSession, {text, true});
}

void MainWindow::showXunFeiText(const QString &text)
{
    deliverRecognised(m_xunFeiSession, {text, false});
}

void MainWindow::xunFeiAnswered()
{
    if (m_recorder != nullptr) {
        m_recorder->expectMoreAnswers();
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
