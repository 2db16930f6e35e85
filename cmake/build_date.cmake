# korvane_build_date: the moment of configuration in GMT, as "Aug 05 2011 14:03:59". Obeys SOURCE_DATE_EPOCH.
string(TIMESTAMP month_number "%m" UTC)
string(TIMESTAMP day_to_second "%d %Y %H:%M:%S" UTC)
set(month_names none Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec)
math(EXPR month_position "${month_number}" OUTPUT_FORMAT DECIMAL)
list(GET month_names ${month_position} month_name)
set(korvane_build_date "${month_name} ${day_to_second}")
