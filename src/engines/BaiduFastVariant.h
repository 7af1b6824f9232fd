#pragma once

namespace mevo {

/// Whether Baidu's fast variant answers: two empty replies with at most five good ones between them mean
/// that it does not.
struct BaiduFastVariant
{
    int emptyReplies = 0;
    int goodReplies = 0;

    /// Counts an empty reply. True when the variant is to be given up; the counters begin anew then.
    bool emptyReply()
    {
        ++emptyReplies;
        if (emptyReplies < 2 || goodReplies > 5) {
            return false;
        }
        *this = {};
        return true;
    }

    /// Counts any other reply; the sixth forgets the empty ones.
    void goodReply()
    {
        ++goodReplies;
        if (goodReplies >= 6) {
            *this = {};
        }
    }
};

} // namespace mevo
