#include "curltrust.h"

#include <wincrypt.h>

namespace demo {

namespace {

constexpr DWORD SHA256_BYTES = 32;
// Newer than the platform that this program is written for.
constexpr DWORD PROVIDER_WITH_SHA256 = 24; // PROV_RSA_AES
constexpr ALG_ID SHA256 = 0x800C;          // CALG_SHA_256

std::string base64(const BYTE* bytes, DWORD count, const char* lineEnd)
{
    static const char DIGITS[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    constexpr DWORD LINE_BYTES = 48;
    std::string text;
    for (DWORD n = 0; n < count; n += 3) {
        DWORD group = DWORD(bytes[n] << 16) | DWORD(n + 1 < count ? bytes[n + 1] << 8 : 0) |
                      DWORD(n + 2 < count ? bytes[n + 2] : 0);
        for (DWORD digit = 0; digit < 4; ++digit) {
            text += n + digit <= count ? DIGITS[group >> (18 - 6 * digit) & 63] : '=';
        }
        text += (n + 3) % LINE_BYTES == 0 ? lineEnd : "";
    }
    return text;
}

// The certificates that the system trusts, in the form of a bundle.
const std::string& systemCertificates()
{
    static std::string bundle;
    HCERTSTORE store = bundle.empty() ? CertOpenSystemStoreA(0, "ROOT") : nullptr;
    PCCERT_CONTEXT found = nullptr;
    while (store != nullptr && (found = CertEnumCertificatesInStore(store, found)) != nullptr) {
        bundle += "-----BEGIN CERTIFICATE-----\n" +
                  base64(found->pbCertEncoded, found->cbCertEncoded, "\n") +
                  "\n-----END CERTIFICATE-----\n";
    }
    if (store != nullptr) {
        CertCloseStore(store, 0);
    }
    return bundle;
}

// As SSH programs show it.
std::string fingerprintOf(const curl_khkey* key)
{
    HCRYPTPROV provider = 0;
    HCRYPTHASH hash = 0;
    BYTE sum[SHA256_BYTES] = {};
    DWORD count = sizeof sum;
    CryptAcquireContextA(&provider, nullptr, nullptr, PROVIDER_WITH_SHA256, CRYPT_VERIFYCONTEXT);
    bool summed =
        CryptCreateHash(provider, SHA256, 0, 0, &hash) &&
        CryptHashData(hash, reinterpret_cast<const BYTE*>(key->key), DWORD(key->len), 0) &&
        CryptGetHashParam(hash, HP_HASHVAL, sum, &count, 0);
    CryptDestroyHash(hash);
    CryptReleaseContext(provider, 0);
    std::string text = base64(sum, SHA256_BYTES, "");
    return summed ? "SHA256:" + text.substr(0, text.find('=')) : "";
}

// The user is asked after the connection has been refused: here libcurl may not be left. Then it
// is made again.
int onHostKey(CURL*, const curl_khkey*, const curl_khkey* found, curl_khmatch match, void* context)
{
    auto key = static_cast<HostKey*>(context);
    if (match == CURLKHMATCH_OK) {
        return CURLKHSTAT_FINE;
    }
    key->fingerprint = found->len != 0 ? fingerprintOf(found) : "";
    key->changed = match != CURLKHMATCH_MISSING;
    bool accepted = !key->changed && !key->fingerprint.empty() && key->fingerprint == key->accepted;
    return accepted ? CURLKHSTAT_FINE_ADD_TO_FILE : CURLKHSTAT_REJECT;
}

} // namespace

void setTrust(CURL* easy, const Address& address, HostKey* key)
{
    key->fingerprint.clear();
    key->changed = false;
    curl_easy_setopt(easy, CURLOPT_SSH_KNOWNHOSTS, address.knownHosts.c_str());
    curl_easy_setopt(easy, CURLOPT_SSH_KEYFUNCTION, onHostKey);
    curl_easy_setopt(easy, CURLOPT_SSH_KEYDATA, key);
    if (!address.bundle.empty()) {
        curl_easy_setopt(easy, CURLOPT_CAINFO, address.bundle.c_str());
    } else if (address.protocol == Protocol::FtpTls || address.protocol == Protocol::Ftps) {
        const std::string& bundle = systemCertificates();
        curl_blob blob = {const_cast<char*>(bundle.data()), bundle.size(), CURL_BLOB_NOCOPY};
        curl_easy_setopt(easy, CURLOPT_CAINFO_BLOB, &blob);
    }
}

} // namespace demo
