# Turns the introduction of korvane.h into the main page of Doxygen and its banners into groups, line by line, so that
# warnings keep their line numbers:
#     /* -----           /** @} */
#      * Title           /** @defgroup title Title
#      * what it is       * what it is
#      * ----- */         * @{ */
NR == 1 {
    print "/** @mainpage"
    next
}
/^\/\* -+$/ {
    print(sections++ ? "/** @} */" : "")
    getline
    title = substr($0, 4)
    name = tolower(title)
    gsub(/[^a-z]+/, "_", name)
    print "/** @defgroup " name " " title
    next
}
/^ \* -+ \*\/$/ {
    print " * @{ */"
    next
}
/^#endif \/\* KORVANE_H \*\/$/ {
    print $0 " /** @} */"
    next
}
{ print }
