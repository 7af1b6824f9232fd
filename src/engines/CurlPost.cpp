#include "engines/CurlPost.h"

#include <curl/curl.h>

#include <memory>

namespace mevo {

namespace {

struct FreeHandle
{
    void operator()(CURL *handle) const { curl_easy_cleanup(handle); }
};

struct FreeList
{
    void operator()(curl_slist *list) const { curl_slist_free_all(list); }
};

using HeaderList = std::unique_ptr<curl_slist, FreeList>;

HeaderList headerList(const QList<QByteArray> &headers)
{
    HeaderList list;
    for (const QByteArray &header : headers) {
        curl_slist *const longer = curl_slist_append(list.get(), header.constData());
        if (longer == nullptr) {
            return nullptr; // out of memory
        }
        static_cast<void>(list.release()); // the longer list begins with it
        list.reset(longer);
    }
    return list;
}

std::size_t takeChunk(char *data, std::size_t size, std::size_t count, void *user)
{
    const auto length = size * count;
    const auto &onChunk = *static_cast<const CurlPost::OnChunk *>(user);
    return onChunk(QByteArray(data, static_cast<int>(length))) ? length : 0;
}

} // namespace

CurlLibrary::CurlLibrary()
{
    curl_global_init(CURL_GLOBAL_DEFAULT);
}

CurlLibrary::~CurlLibrary()
{
    curl_global_cleanup();
}

CurlPost::CurlPost(QByteArray url, QList<QByteArray> headers, bool checkCertificate)
    : m_url(std::move(url))
    , m_headers(std::move(headers))
    , m_checkCertificate(checkCertificate)
{
}

CurlPost::Outcome CurlPost::send(const QByteArray &payload, const OnChunk &onChunk)
{
    const std::unique_ptr<CURL, FreeHandle> owned(curl_easy_init());
    const HeaderList headers = headerList(m_headers);
    CURL *const handle = owned.get();
    if (handle == nullptr || (headers == nullptr && !m_headers.isEmpty())) {
        return Outcome::NoHandle;
    }
    curl_easy_setopt(handle, CURLOPT_CUSTOMREQUEST, "POST");
    curl_easy_setopt(handle, CURLOPT_URL, m_url.constData());
    curl_easy_setopt(handle, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(handle, CURLOPT_DEFAULT_PROTOCOL, "https");
    curl_easy_setopt(handle, CURLOPT_SSL_VERIFYPEER, m_checkCertificate ? 1L : 0L);
    curl_easy_setopt(handle, CURLOPT_SSL_VERIFYHOST, m_checkCertificate ? 2L : 0L);
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, takeChunk);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, &onChunk);
    curl_easy_setopt(handle, CURLOPT_HTTPHEADER, headers.get());
    curl_easy_setopt(handle, CURLOPT_POSTFIELDS, payload.constData());

    const CURLcode result = curl_easy_perform(handle);
    if (result != CURLE_OK) {
        m_error = QString::fromUtf8(curl_easy_strerror(result));
        return Outcome::Failed;
    }
    m_error.clear();
    return Outcome::Done;
}

} // namespace mevo
