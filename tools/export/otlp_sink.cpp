#include "tools/export/otlp_sink.hpp"

#include "tools/export/otlp_answer.hpp"
#include "tools/export/otlp_request.hpp"
#include "tools/text/time_text.hpp"

namespace orvane::tools {
namespace {

class OtlpSink final : public ExportSink {
public:
    explicit OtlpSink(const HttpClient::Options& options)
        : name_(format_http_url(options.url)), client_(options) {}

    std::string name() const override { return name_; }

    Delivery send(std::span<const ExportRecord> records) override {
        Delivery delivery;
        const auto answer = client_.post(otlp_request(records), delivery.problem);
        return answer ? delivery_of(*answer, records.size(), wall_clock()) : delivery;
    }

    void interrupt() override { client_.interrupt(); }

private:
    std::string name_;
    HttpClient client_;
};

}  // namespace

std::unique_ptr<ExportSink> make_otlp_sink(const HttpClient::Options& options) {
    return std::make_unique<OtlpSink>(options);
}

}  // namespace orvane::tools
