#include "donation/DonationLink.h"

#include "donation/DonationManager.h"

#include <gtest/gtest.h>

namespace velloran {

TEST(DonationLink, TakesWellFormedAddresses) {
    for (const char* text : {"https://buy.stripe.com/abc123", "https://example.org",
                             "https://example.org:8443/a/b?c=d&e=%20#f", "https://a-b.example/?x[]=1"}) {
        EXPECT_EQ(DonationLink(text).text(), text);
    }
}

TEST(DonationLink, CheckoutPageIsAnHttpsAddressAndOneObject) {
    EXPECT_TRUE(DonationManager::stripeURL().text().starts_with("https://"));
    EXPECT_EQ(&DonationManager::stripeURL(), &DonationManager::stripeURL());
}

TEST(DonationLinkDeathTest, AddressThatIsNotWellFormedIsFatal) {
    for (const char* text : {"", "https://", "http://example.org/", "example.org", "https://exa mple.org/",
                             "https://example.org/\n", "https://\xc3\xa9.org", "javascript:https://example.org"}) {
        EXPECT_DEATH(DonationLink{text}, "^Fatal error: The donation link is not a well-formed https URL: ") << text;
    }
    EXPECT_DEATH(DonationLink{"nonsense"},
                 "^Fatal error: The donation link is not a well-formed https URL: nonsense\n$");
}

} // namespace velloran
