// SPDX-License-Identifier: MIT
#include "tests/support/WeatherServer.h"

#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <cstdio>
#include <cstdlib>
#include <future>
#include <stdexcept>

/// The server's library is built without the thread checker, which misses its locks: a socket's
/// buffer that threads hand on looks like a race. The checker asks for this by name; a program with
/// more to say has its own.
extern "C" [[gnu::weak]] const char* __tsan_default_suppressions() {
    return "race:libcpp-httplib.so\n";
}

namespace support {
namespace {

using Key = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;
using Certificate = std::unique_ptr<X509, decltype(&X509_free)>;

void addExtension(X509* certificate, int kind, const char* value) {
    X509_EXTENSION* extension = X509V3_EXT_conf_nid(nullptr, nullptr, kind, value);
    X509_add_ext(certificate, extension, -1);
    X509_EXTENSION_free(extension);
}

Certificate selfSigned(EVP_PKEY* key) {
    Certificate made(X509_new(), X509_free);
    X509* certificate = made.get();
    X509_set_version(certificate, X509_VERSION_3);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate), 1);
    X509_gmtime_adj(X509_getm_notBefore(certificate), -60);
    X509_gmtime_adj(X509_getm_notAfter(certificate), 60 * 60);
    X509_set_pubkey(certificate, key);
    X509_NAME* name = X509_get_subject_name(certificate);
    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC,
                               reinterpret_cast<const unsigned char*>("Throwaway"), -1, -1, 0);
    X509_set_issuer_name(certificate, name);
    addExtension(certificate, NID_basic_constraints, "critical,CA:TRUE");
    addExtension(certificate, NID_subject_alt_name, "DNS:localhost,DNS:aviationweather.gov");
    X509_sign(certificate, key, EVP_sha256());
    return made;
}

std::unique_ptr<httplib::Server> secureServer(const std::filesystem::path& certificateFile) {
    const Key key(EVP_EC_gen("P-256"), EVP_PKEY_free);
    const Certificate certificate = selfSigned(key.get());
    std::FILE* file = std::fopen(certificateFile.c_str(), "wb");
    PEM_write_X509(file, certificate.get());
    std::fclose(file);
    return std::make_unique<httplib::SSLServer>(certificate.get(), key.get());
}

} // namespace

WeatherServer::WeatherServer(Answer answer, Kind kind)
    : server_(kind == https ? secureServer(folder_ / "certificate.pem")
                            : std::make_unique<httplib::Server>()) {
    // Loopback is reached directly, whatever proxy the environment names.
    ::setenv("no_proxy", "*", 1);
    // A connection occupies a thread for as long as it is kept.
    server_->new_task_queue = [] { return new httplib::ThreadPool(32); };
    server_->set_tcp_nodelay(true);
    server_->set_keep_alive_max_count(1000);
    server_->Get(".*", [this, answer = std::move(answer)](const httplib::Request& request,
                                                          httplib::Response& response) {
        {
            const std::scoped_lock lock(mutex_);
            targets_.push_back(request.target);
            changed_.notify_all();
        }
        answer(request, response);
    });
    const int port = server_->bind_to_any_port("127.0.0.1");
    if (!server_->is_valid() || port <= 0) {
        throw std::runtime_error("no server on loopback");
    }
    authority_ = "localhost:" + std::to_string(port);
    thread_ = std::thread([this] { server_->listen_after_bind(); });
}

WeatherServer::~WeatherServer() {
    gates.openAll();
    // Stopping a server that has not begun to listen leaves it listening for ever.
    while (!server_->is_running()) {
        std::this_thread::yield();
    }
    server_->stop();
    thread_.join();
}

platform::URLSessionOptions WeatherServer::options() const {
    platform::URLSessionOptions options;
    options.certificateFile = (folder_ / "certificate.pem").string();
    return options;
}

std::vector<std::string> WeatherServer::targets() const {
    const std::scoped_lock lock(mutex_);
    return targets_;
}

bool WeatherServer::waitForTargets(std::size_t count) const {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, patience, [&] { return targets_.size() >= count; });
}

std::string fetch(platform::URLSessions& sessions, const std::string& address) {
    const auto promise = std::make_shared<std::promise<std::string>>();
    auto future = promise->get_future();
    sessions.startDataTask({address}, [promise](const std::optional<platform::Data>& data) {
        promise->set_value(
            data ? std::string(reinterpret_cast<const char*>(data->data()), data->size())
                 : "(no data)");
    });
    return future.wait_for(patience) == std::future_status::ready ? future.get() : "(no answer)";
}

} // namespace support
