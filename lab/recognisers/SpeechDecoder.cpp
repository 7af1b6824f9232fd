#include "recognisers/SpeechDecoder.h"

#include <pocketsphinx.h>
#include <sphinxbase/err.h>

#define MEVO_MODEL "/usr/share/pocketsphinx/model/en-us"

namespace lab {

struct SpeechDecoder::Handles
{
    cmd_ln_t *config = nullptr;
    ps_decoder_t *decoder = nullptr;
};

SpeechDecoder::SpeechDecoder()
    : m_handles(std::make_unique<Handles>())
{
    err_set_logfp(nullptr);
    m_handles->config = cmd_ln_init(nullptr, ps_args(), TRUE, "-hmm", MEVO_MODEL "/en-us", "-dict",
                                    MEVO_MODEL "/cmudict-en-us.dict", "-lm", MEVO_MODEL "/en-us.lm.bin",
                                    "-logfn", "/dev/null", nullptr);
    if (m_handles->config != nullptr) {
        m_handles->decoder = ps_init(m_handles->config);
    }
}

SpeechDecoder::~SpeechDecoder()
{
    if (m_handles->decoder != nullptr) {
        ps_free(m_handles->decoder);
    }
    if (m_handles->config != nullptr) {
        cmd_ln_free_r(m_handles->config);
    }
}

bool SpeechDecoder::isReady() const
{
    return m_handles->decoder != nullptr;
}

QString SpeechDecoder::recognise(const QByteArray &pcm)
{
    if (!isReady()) {
        return {};
    }
    ps_decoder_t *decoder = m_handles->decoder;
    ps_start_utt(decoder);
    // The whole utterance at once: its mean is then its own, and the result does not depend on what came
    // before.
    ps_process_raw(decoder, reinterpret_cast<const int16 *>(pcm.constData()),
                   static_cast<size_t>(pcm.size() / 2), FALSE, TRUE);
    ps_end_utt(decoder);
    return QString::fromUtf8(ps_get_hyp(decoder, nullptr));
}

} // namespace lab
