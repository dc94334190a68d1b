# The manual page and the completions lie where man and the shells look for them.
foreach(
  name
  man/man1/ravelin.1
  bash-completion/completions/ravelin
  zsh/site-functions/_ravelin
  fish/vendor_completions.d/ravelin.fish)
  if(NOT EXISTS ${PREFIX}/share/${name})
    message(SEND_ERROR "share/${name} is not installed")
    continue()
  endif()
  file(READ ${PREFIX}/share/${name} text)
  if(NOT text MATCHES "from-points" AND NOT text MATCHES "from\\\\-points")
    message(SEND_ERROR "share/${name} does not know the subcommands")
  endif()
endforeach()
