# Which addresses of the donation page the build takes. Called with ADDRESS, it only looks at that one.
include("${CMAKE_CURRENT_LIST_DIR}/../../cmake/VelloranDonationLink.cmake")

if(DEFINED ADDRESS)
  velloran_require_https_url(ADDRESS "${ADDRESS}")
  return()
endif()

function(expect_taken is_expected address)
  execute_process(
    COMMAND "${CMAKE_COMMAND}" "-DADDRESS=${address}" -P "${CMAKE_CURRENT_FUNCTION_LIST_FILE}"
    RESULT_VARIABLE result
    ERROR_VARIABLE said)
  if(is_expected AND NOT result EQUAL 0)
    message(SEND_ERROR "Not taken: '${address}'")
  elseif(NOT is_expected AND NOT said MATCHES "is not a well-formed https URL")
    message(SEND_ERROR "Taken: '${address}'")
  endif()
endfunction()

foreach(address "https://buy.stripe.com/abc123" "https://example.org" "https://example.org:8443/a/b?c=d&e=%20#f"
                "https://a-b.example/?x[]=1")
  expect_taken(TRUE "${address}")
endforeach()
foreach(address "" "https://" "http://example.org/" "example.org" "https://exa mple.org/" "https://-a.org/" "https://a..org/"
                "https://example.org/%zz" "https://example.org/\n" "https://example.org:123456/" "javascript:https://example.org")
  expect_taken(FALSE "${address}")
endforeach()
