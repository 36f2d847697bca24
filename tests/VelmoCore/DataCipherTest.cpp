#include "VelmoCore/Storage/DataCipher.h"

#include <gtest/gtest.h>

namespace velmo {
namespace {

using Reason = DataCipher::CipherError::Reason;

std::optional<Reason> failure(const DataCipher &cipher, const QByteArray &sealed)
{
    try {
        cipher.open(sealed);
        return std::nullopt;
    } catch (const DataCipher::CipherError &error) {
        return error.reason();
    }
}

TEST(DataCipher, TakesKeysOfThirtyTwoBytesOnly)
{
    for (const qsizetype length : {0, 31, 33})
        EXPECT_THROW(DataCipher(QByteArray(length, 'k')), DataCipher::CipherError);
    EXPECT_NE(DataCipher::generateKeyData(), DataCipher::generateKeyData());
}

TEST(DataCipher, OpensWhatAnotherImplementationSealed)
{
    // Test case 14 of the GCM paper (McGrew and Viega): a zero key, nonce and block.
    const QByteArray sealed = "VLMO1" + QByteArray(12, '\0') +
                              QByteArray::fromHex("cea7403d4d606b6e074ec5d3baf39d18"
                                                  "d0d1c8a799996bf0265b98b5d48ab919");
    EXPECT_EQ(DataCipher(QByteArray(32, '\0')).open(sealed), QByteArray(16, '\0'));
}

TEST(DataCipher, SealsAnyLengthAnewEachTime)
{
    const DataCipher cipher(DataCipher::generateKeyData());
    for (const qsizetype length : {0, 1, 17, 1'000'003}) {
        const QByteArray plain(length, 'x');
        EXPECT_NE(cipher.seal(plain), cipher.seal(plain));
        EXPECT_EQ(cipher.open(cipher.seal(plain)), plain);
    }
}

TEST(DataCipher, NoticesEveryChangedByteAndEveryCut)
{
    const DataCipher cipher(DataCipher::generateKeyData());
    const QByteArray sealed = cipher.seal("segredo");
    for (qsizetype i = 0; i < sealed.size(); ++i) {
        QByteArray changed = sealed;
        changed[i] = static_cast<char>(changed[i] ^ 1);
        const Reason expected = i < 5 ? Reason::notSealed : Reason::unreadable;
        EXPECT_EQ(failure(cipher, changed), expected) << i;
        EXPECT_EQ(failure(cipher, sealed.first(i)), expected) << i;
    }
    EXPECT_EQ(failure(cipher, sealed + '\0'), Reason::unreadable);
}

} // namespace
} // namespace velmo
