# The addresses and identifiers that a build fixes. A packager sets the real ones; the defaults reach nobody but a
# server on this machine. Each address can be overridden for one run by the environment variable of the same name.

set(CORVANE_PUBLISHING_URL "http://127.0.0.1:3002/" CACHE STRING "Base of the publishing server, ends in /")
set(CORVANE_NOTIFICATION_URL "http://127.0.0.1:3002/" CACHE STRING "Base of the notification server, ends in /")
set(CORVANE_STORE_LOOKUP_URL "http://127.0.0.1:3002/lookup?id=0000000000&country=us" CACHE STRING "Store look-up address")
set(CORVANE_STORE_PAGE_URL "http://127.0.0.1:3002/store/" CACHE STRING "Store page opened when an update has no link")
set(CORVANE_COLLECT_URL "http://127.0.0.1:3002/g/collect" CACHE STRING "Collection endpoint")
set(CORVANE_TAG_URL "http://127.0.0.1:3002/gtag/js" CACHE STRING "Tag script that the analytics page loads")
set(CORVANE_DONATION_URL "http://127.0.0.1:3002/" CACHE STRING "Base of the donation page, ends in /")
set(CORVANE_MEASUREMENT_ID "G-0000000000" CACHE STRING "Measurement identifier")
set(CORVANE_SUPPORT_MAIL "support@corvane.invalid" CACHE STRING "Support mail address")
set(CORVANE_DONATION_ACCOUNT "0000000000000" CACHE STRING "Donation account identifier")
set(CORVANE_STORE_ID "0000000000" CACHE STRING "Store identifier of the application")

# For those who look at the package rather than for the program.
set(CORVANE_HOMEPAGE_URL "https://corvane.example/" CACHE STRING "Home page with help/ and screenshots/, ends in /")
set(CORVANE_MAINTAINER "Hollisward <${CORVANE_SUPPORT_MAIL}>" CACHE STRING "Who answers for the package: Name <mail address>")
