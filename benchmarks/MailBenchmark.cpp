// 2,000 messages, each with a plain text that is blank, HTML of 5 to 60 KB and encoded headers,
// from their bytes to the text and the links of the HTML: ours, against GMime 3 that only decodes
// the same headers and parts. `items_per_second` counts messages.

#include "VelmoCore/Mail/MailParser.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <gmime/gmime.h>
#include <memory>

namespace velmo {
namespace {

constexpr int messageCount = 2000;

QByteArray html(int message)
{
    const qsizetype size = 5'000 + qsizetype(message) * 7919 % 55'000;
    QByteArray page =
        "<!DOCTYPE html>\r\n<html><head><meta charset=\"utf-8\"><title>Aviso</title>\r\n<style>\r\n"
        ".corpo { font-family: Arial, sans-serif; color: #333; }\r\n</style></head><body>\r\n";
    for (int row = 0; page.size() < size; ++row) {
        page +=
            "<table class=\"corpo\" width=\"600\"><tr><td style=\"padding: 12px 24px\">Olá,&nbsp;"
            "Conceição &mdash; sua compra nº " +
            QByteArray::number(message * 1000 + row) +
            " saiu para entrega.</td></tr>\r\n</table>\r\n";
        if (row % 3 == 0)
            page +=
                "<p class=\"link\"><a href=\"https://loja.example.org/pedido/" +
                QByteArray::number(row) +
                "?origem=mail&amp;dia=5\" style=\"color: #06c\">Acompanhar a entrega</a><br/>\r\n"
                "</p>\r\n";
    }
    return page + "</body></html>\r\n";
}

QByteArray base64Lines(const QByteArray &bytes)
{
    const QByteArray text = bytes.toBase64();
    QByteArray lines;
    for (qsizetype start = 0; start < text.size(); start += 76)
        lines += text.mid(start, 76) + "\r\n";
    return lines;
}

QByteArray quotedPrintable(const QByteArray &bytes)
{
    QByteArray lines;
    int column = 0;
    for (const char c : bytes) {
        const bool isBreak = c == '\r' || c == '\n';
        const bool isPlain = (c >= ' ' && c <= '~' && c != '=') || isBreak;
        if (!isBreak && column > 72) {
            lines += "=\r\n";
            column = 0;
        }
        lines += isPlain ? QByteArray(1, c) : "=" + QByteArray(1, c).toHex().toUpper();
        column = isBreak ? 0 : column + (isPlain ? 1 : 3);
    }
    return lines;
}

QByteArray messageText(int message)
{
    const bool isBase64 = message % 2 == 0;
    const QByteArray boundary = "----=_Parte_" + QByteArray::number(message);
    QByteArray text;
    for (int hop = 0; hop < 4; ++hop)
        text += "Received: from mx" + QByteArray::number(hop) +
                ".example.org (mx.example.org [192.0.2.7])\r\n\tby mail.example.net with ESMTPS id "
                "4f1b9c2a; Fri, 5 Jul 2024 10:00:00 -0300 (BRT)\r\n";
    return text +
           "DKIM-Signature: v=1; a=rsa-sha256; c=relaxed/relaxed; d=example.org; s=mail;\r\n\tbh="
           "47DEQpj8HBSa+/TImW+5JCeuQeRkm5NMpJWZG3hSuFU=; h=from:to:subject:date;\r\n"
           "From: =?UTF-8?Q?Loja_S=C3=A3o_Jos=C3=A9?= <loja@example.org>\r\n"
           "To: =?UTF-8?B?Q29uY2Vpw6fDo28=?= <conceicao@example.net>\r\n"
           "Subject: =?UTF-8?B?U2V1IHBlZGlkbyBzYWl1IHBhcmE=?= =?UTF-8?Q?_a_entrega_=E2=80=94?=\r\n"
           "Date: Fri, 5 Jul 2024 10:00:00 -0300\r\nMessage-ID: <" +
           QByteArray::number(message) +
           "@example.org>\r\nMIME-Version: 1.0\r\nContent-Type: multipart/alternative; "
           "boundary=\"" +
           boundary + "\"\r\n\r\n--" + boundary +
           "\r\nContent-Type: text/plain; charset=UTF-8\r\nContent-Transfer-Encoding: "
           "quoted-printable\r\n\r\n=20=20\r\n\r\n--" +
           boundary + "\r\nContent-Type: text/html; charset=UTF-8\r\nContent-Transfer-Encoding: " +
           (isBase64 ? "base64\r\n\r\n" + base64Lines(html(message))
                     : "quoted-printable\r\n\r\n" + quotedPrintable(html(message))) +
           "\r\n--" + boundary + "--\r\n";
}

const std::vector<QByteArray> &messages()
{
    static const std::vector<QByteArray> made = [] {
        std::vector<QByteArray> all;
        for (int message = 0; message < messageCount; ++message)
            all.push_back(messageText(message));
        return all;
    }();
    return made;
}

/// `read` gives the length of what it read of a message.
template <typename Read>
void measure(benchmark::State &state, Read read)
{
    std::int64_t bytes = 0;
    for (const QByteArray &message : messages())
        bytes += message.size();
    std::size_t length = 0;
    for (auto _ : state) {
        length = 0;
        for (const QByteArray &message : messages())
            length += read(message);
    }
    state.SetItemsProcessed(state.iterations() * messageCount);
    state.SetBytesProcessed(state.iterations() * bytes);
    state.counters["read"] = double(length);
}

std::pair<QString, MailParser::TextParts> decoded(const QByteArray &message)
{
    const auto split = MailParser::splitHeaders(message);
    return {MailParser::decodeHeader(*MailParser::header(u"Subject", split.headers)),
            MailParser::textParts(split.headers, split.body, 0)};
}

void ourParsing(benchmark::State &state)
{
    measure(state, [](const QByteArray &message) {
        const ParsedMail mail = MailParser::parse(message);
        return std::size_t(mail.text.size()) + mail.links.size();
    });
}
BENCHMARK(ourParsing)->Unit(benchmark::kMillisecond);

/// Without the links.
void ourText(benchmark::State &state)
{
    measure(state, [](const QByteArray &message) {
        auto [subject, parts] = decoded(message);
        return std::size_t(subject.size() + parts.plain->size() +
                           MailParser::htmlToText(std::move(*parts.html)).size());
    });
}
BENCHMARK(ourText)->Unit(benchmark::kMillisecond);

void ourDecoding(benchmark::State &state)
{
    measure(state, [](const QByteArray &message) {
        const auto [subject, parts] = decoded(message);
        return std::size_t(subject.size() + parts.plain->size() + parts.html->size());
    });
}
BENCHMARK(ourDecoding)->Unit(benchmark::kMillisecond);

struct Unref {
    void operator()(void *object) const { g_object_unref(object); }
};
template <typename Object>
using Ref = std::unique_ptr<Object, Unref>;

/// The length of one text part in UTF-8; 0 for a part of another kind.
std::size_t textLength(GMimeObject *part)
{
    if (!GMIME_IS_TEXT_PART(part))
        return 0;
    const std::unique_ptr<char, decltype(&g_free)> text(
        g_mime_text_part_get_text(GMIME_TEXT_PART(part)), g_free);
    return std::strlen(text.get());
}

std::size_t readByGMime(const QByteArray &bytes)
{
    const Ref<GMimeStream> stream(
        g_mime_stream_mem_new_with_buffer(bytes.constData(), std::size_t(bytes.size())));
    const Ref<GMimeParser> parser(g_mime_parser_new_with_stream(stream.get()));
    const Ref<GMimeMessage> message(g_mime_parser_construct_message(parser.get(), nullptr));
    std::size_t read = std::strlen(g_mime_message_get_subject(message.get()));
    auto *container = GMIME_MULTIPART(g_mime_message_get_mime_part(message.get()));
    for (int i = 0; i < g_mime_multipart_get_count(container); ++i)
        read += textLength(g_mime_multipart_get_part(container, i));
    return read;
}

void gmimeDecoding(benchmark::State &state)
{
    g_mime_init();
    measure(state, readByGMime);
}
BENCHMARK(gmimeDecoding)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace velmo
