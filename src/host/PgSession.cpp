// The helper functions the PostgreSQL dialect calls. Each session creates them in its own
// pg_temp schema, so a server needs nothing installed and nothing is left behind.
#include "host/PgSession.h"

namespace PgSession {

const char* HelperFunctions()
{
    return R"SQL(
CREATE FUNCTION pg_temp.jet_fold(t text) RETURNS text LANGUAGE sql IMMUTABLE AS
$f$ SELECT translate(t, 'ABCDEFGHIJKLMNOPQRSTUVWXYZ', 'abcdefghijklmnopqrstuvwxyz') $f$;

CREATE FUNCTION pg_temp.jet_like_re(p text) RETURNS text LANGUAGE plpgsql IMMUTABLE STRICT AS $f$
DECLARE
  r text := '';
  i int := 1;
  j int;
  n int := length(p);
  c text;
  cls text;
  neg boolean;
BEGIN
  WHILE i <= n LOOP
    c := substr(p, i, 1);
    IF c = '*' OR c = '%' THEN
      r := r || '.*';
    ELSIF c = '?' OR c = '_' THEN
      r := r || '.';
    ELSIF c = '#' THEN
      r := r || '[0-9]';
    ELSIF c = '[' THEN
      j := i + 1;
      cls := '';
      neg := false;
      IF j <= n AND substr(p, j, 1) = '!' THEN neg := true; j := j + 1; END IF;
      WHILE j <= n AND substr(p, j, 1) <> ']' LOOP
        c := substr(p, j, 1);
        IF c !~ '^[[:alnum:]]$' THEN c := '\' || c; END IF;
        -- A "-" first or last in a class stands for itself.
        IF j + 2 <= n AND substr(p, j + 1, 1) = '-' AND substr(p, j + 2, 1) <> ']' THEN
          cls := cls || c || '-' || CASE WHEN substr(p, j + 2, 1) ~ '^[[:alnum:]]$' THEN substr(p, j + 2, 1) ELSE '\' || substr(p, j + 2, 1) END;
          j := j + 3;
        ELSE
          cls := cls || c;
          j := j + 1;
        END IF;
      END LOOP;
      IF j > n THEN
        RAISE EXCEPTION 'Invalid pattern string: unclosed "[" in ''%''.', p;
      END IF;
      IF cls = '' THEN
        r := r || CASE WHEN neg THEN '.' ELSE '(?!)' END;
      ELSE
        r := r || '[' || CASE WHEN neg THEN '^' ELSE '' END || cls || ']';
      END IF;
      i := j;
    ELSIF c ~ '^[[:alnum:]]$' THEN
      r := r || c;
    ELSE
      r := r || '\' || c;
    END IF;
    i := i + 1;
  END LOOP;
  RETURN '^(?:' || r || ')$';
END $f$;

CREATE FUNCTION pg_temp.jet_plus(a anycompatible, b anycompatible) RETURNS anycompatible LANGUAGE plpgsql IMMUTABLE AS $f$
BEGIN
  IF a IS NULL OR b IS NULL THEN RETURN NULL; END IF;
  IF pg_typeof(a) IN ('text'::regtype, 'character varying'::regtype, 'character'::regtype) THEN
    RETURN a::text || b::text;
  END IF;
  RETURN a + b;
END $f$;

CREATE FUNCTION pg_temp.jet_amp(a text, b text) RETURNS text LANGUAGE sql IMMUTABLE AS
$f$ SELECT CASE WHEN a IS NULL AND b IS NULL THEN NULL ELSE concat(a, b) END $f$;

CREATE FUNCTION pg_temp.jet_clng(t text) RETURNS bigint LANGUAGE plpgsql IMMUTABLE STRICT AS $f$
DECLARE d double precision;
BEGIN
  BEGIN
    d := btrim(t)::double precision;
  EXCEPTION WHEN others THEN
    RAISE EXCEPTION 'Data type mismatch in criteria expression: ''%'' is not a number.', t;
  END;
  d := round(d); -- rint: half to even, as the classic engine rounds
  IF d IS NULL OR d = 'NaN'::double precision OR d < -2147483648 OR d > 2147483647 THEN
    RAISE EXCEPTION 'Overflow converting % to a long integer.', t;
  END IF;
  RETURN d::bigint;
END $f$;

CREATE FUNCTION pg_temp.jet_cdbl(t text) RETURNS double precision LANGUAGE plpgsql IMMUTABLE STRICT AS $f$
BEGIN
  RETURN btrim(t)::double precision;
EXCEPTION WHEN others THEN
  RAISE EXCEPTION 'Data type mismatch in criteria expression.';
END $f$;

CREATE FUNCTION pg_temp.jet_right(t text, n bigint) RETURNS text LANGUAGE sql IMMUTABLE AS
$f$ SELECT CASE WHEN n IS NULL OR t IS NULL THEN NULL WHEN n <= 0 THEN '' ELSE right(t, CAST(least(n, 2147483647) AS int)) END $f$;
)SQL";
}

const char* CatalogueQuery()
{
    return "SELECT c.relname, a.attname, t.typcategory FROM pg_catalog.pg_class c "
           "JOIN pg_catalog.pg_namespace n ON n.oid = c.relnamespace "
           "JOIN pg_catalog.pg_attribute a ON a.attrelid = c.oid AND a.attnum > 0 AND NOT a.attisdropped "
           "JOIN pg_catalog.pg_type t ON t.oid = a.atttypid "
           "WHERE c.relkind IN ('r', 'v', 'm', 'f', 'p') AND n.nspname = ANY (pg_catalog.current_schemas(false)) "
           "ORDER BY n.nspname = 'public' DESC, c.relname, a.attnum";
}

} // namespace PgSession
