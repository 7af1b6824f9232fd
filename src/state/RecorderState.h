#pragma once

/// The recorder's engine flags, of which normally exactly one of the first three is on, and its stream
/// state. GUI thread only.
struct RecorderState
{
    bool BaiDuNoStreamApi = false;
    bool UseTXASRApi = true;
    bool UseXunFeiWebApi = false;
    bool EnableXunFeiWebApiDwa = false; ///< XunFei's dynamic correction
    bool BaiduTokenRefreshed = false;
    bool BaiduViaSettings = false;

    int FrameStatus = 0;         ///< XunFei frame to send next, -1 when the stream is closed
    bool RecordStarting = false; ///< OnRecordStart is running
    bool BufferReady = false;    ///< the microphone has closed and the audio is being handed over
    double SavedInputVolume = 1.0;
};
