// One message of 3,000 characters and 30 links, as it is looked at when it arrives.

#include "VelmoCore/Mail/LoginCodeDetector.h"

#include <benchmark/benchmark.h>

namespace velmo {
namespace {

const QString portuguese =
    QStringLiteral("Olá, João! Não compartilhe esta informação com ninguém: nossa equipe não a "
                   "pede por telefone. Sua solicitação nº 20481 foi recebida às 14:32 e será "
                   "concluída até amanhã — é só aguardar.\n");
const QString chinese = QStringLiteral("您的订单已经收到，我们会尽快处理，请耐心等待。");
const QString japanese =
    QStringLiteral("ご注文ありがとうございます。商品の発送まで、もうしばらくお待ちください。");
const QString korean =
    QStringLiteral("주문이 접수되었습니다. 빠르게 처리하겠으니 잠시만 기다려 주세요. ");
const QString russian =
    QStringLiteral("Ваш заказ принят. Мы обработаем его как можно скорее, ещё немного подождите. ");
const QString arabic =
    QStringLiteral("تم استلام طلبك، وسنقوم بمعالجته في أقرب وقت ممكن، شكرًا على انتظارك. ");
const QString hindi = QStringLiteral("आपका ऑर्डर मिल गया है, हम इसे जल्द ही भेजेंगे, कृपया प्रतीक्षा करें। ");
const QString emoji = QStringLiteral("🎉 Oferta 👨‍👩‍👧‍👦 só hoje 🛍️✨ ");

QString message(const QString &sentence, const QString &end, qsizetype length)
{
    const QString filled = sentence.repeated(length / sentence.size() + 1);
    return filled.first(length - end.size()) + end;
}

std::vector<MailLink> links()
{
    std::vector<MailLink> links;
    for (int link = 0; link < 30; ++link)
        links.push_back(
            {QStringLiteral("Ver a promoção %1").arg(link),
             QUrl(QStringLiteral("https://exemplo.com.br/ofertas/%1?u=8fa1").arg(link))});
    return links;
}

void detection(benchmark::State &state, const QString &text)
{
    const std::vector<MailLink> all = links();
    const QString subject = QStringLiteral("Aviso sobre a sua solicitação");
    for (auto _ : state)
        benchmark::DoNotOptimize(LoginCodeDetector::detect(subject, text, all));
    state.SetItemsProcessed(state.iterations());
}

const QString code = QStringLiteral(" Seu código: 482 913.");
BENCHMARK_CAPTURE(detection, withoutCode, message(portuguese, {}, 3000));
BENCHMARK_CAPTURE(detection, withCode, message(portuguese, code, 3000));
BENCHMARK_CAPTURE(detection, withCodeInTenThousand,
                  message(portuguese, code, 2900) + message(portuguese, {}, 7100));
BENCHMARK_CAPTURE(detection, chineseWithCode, message(chinese, code, 3000));
BENCHMARK_CAPTURE(detection, chineseWithCodeInTenThousand,
                  message(chinese, code, 2900) + message(chinese, {}, 7100));
BENCHMARK_CAPTURE(detection, japaneseWithCode, message(japanese, code, 3000));
BENCHMARK_CAPTURE(detection, koreanWithCode, message(korean, code, 3000));
BENCHMARK_CAPTURE(detection, russianWithCode, message(russian, code, 3000));
BENCHMARK_CAPTURE(detection, arabicWithCode, message(arabic, code, 3000));
BENCHMARK_CAPTURE(detection, hindiWithCode, message(hindi, code, 3000));
BENCHMARK_CAPTURE(detection, emojiWithCode, message(emoji, code, 3000));
BENCHMARK_CAPTURE(detection, onlyCodeWords, message(QStringLiteral("code 4829 "), {}, 3000));
BENCHMARK_CAPTURE(detection, megabyteOfDigits, message(QStringLiteral("4"), {}, 1'000'000));

} // namespace
} // namespace velmo
