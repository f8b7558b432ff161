# velloran_require_https_url(<name> <text>): ends the configuration unless the text is a well-formed https URL: a host of labels
# with dots between them, an optional port, then path, query and fragment of the characters that may stand there as themselves or
# as %XX.
function(velloran_require_https_url name text)
  set(label "[A-Za-z0-9]([A-Za-z0-9-]*[A-Za-z0-9])?")
  set(port ":[0-9][0-9]?[0-9]?[0-9]?[0-9]?")
  set(rest "[/?#]([]A-Za-z0-9._~:/?#@!$&'()*+,;=[-]|%[0-9A-Fa-f][0-9A-Fa-f])*")
  if(NOT text MATCHES "^https://${label}(\\.${label})*(${port})?(${rest})?$")
    message(FATAL_ERROR "${name} is not a well-formed https URL: ${text}")
  endif()
endfunction()
