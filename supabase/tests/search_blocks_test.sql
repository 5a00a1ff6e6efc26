-- Search by meaning: one's own rows, the nearest first, and no vector that breaks it.
begin;
create extension if not exists pgtap with schema extensions;
set local search_path = public, extensions;
select plan(15);

-- A vector of 768 numbers that begins with these and goes on with zeros.
create function pg_temp.vector_of(variadic numbers real[]) returns real[] language sql as $$
  select numbers || array_fill(0::real, array[768 - cardinality(numbers)])
$$;
insert into blocks (id, user_id, x_position, y_position, width, height, z_index, block_type, raw_text, embedding,
  created_at, updated_at, deleted_at)
select gen_random_uuid(), user_id::uuid, 0, 0, 1, 1, 0, 'text', note, embedding, now(), now(), deleted_at::timestamptz
from (values
  ('AAAAAAAA-0000-4000-8000-000000000000', 'same', pg_temp.vector_of(2, 0), null),
  ('AAAAAAAA-0000-4000-8000-000000000000', 'near', pg_temp.vector_of(9, 3), null),
  ('AAAAAAAA-0000-4000-8000-000000000000', 'half', pg_temp.vector_of(1, 1), null),
  ('AAAAAAAA-0000-4000-8000-000000000000', 'across', pg_temp.vector_of(0, 1), null),
  ('AAAAAAAA-0000-4000-8000-000000000000', 'against', pg_temp.vector_of(-1, 0), null),
  ('AAAAAAAA-0000-4000-8000-000000000000', 'zeros', pg_temp.vector_of(0), null),
  ('AAAAAAAA-0000-4000-8000-000000000000', 'without', null, null),
  ('AAAAAAAA-0000-4000-8000-000000000000', 'deleted', pg_temp.vector_of(2, 0), '2026-11-23T06:00:00Z'),
  ('BBBBBBBB-0000-4000-8000-000000000000', 'of Bob', pg_temp.vector_of(2, 0), null)
) as rows (user_id, note, embedding, deleted_at);

create function pg_temp.found(embedding real[], threshold double precision, how_many integer) returns text[]
language sql as $$
  select coalesce(array_agg(raw_text order by ordinality), '{}')
  from public.search_blocks(embedding::extensions.vector, threshold, how_many)
    with ordinality
$$;

set local role anon;
select is(pg_temp.found(pg_temp.vector_of(1), 0.0, 10), '{}', 'without an id nothing is found');
select set_config('request.headers', '{"x-tallowby-user-id": "CCCCCCCC-0000-4000-8000-000000000000"}', true);
select is(pg_temp.found(pg_temp.vector_of(1), -1.0, 10), '{}', 'nor with the id of somebody else');

select set_config('request.headers', '{"x-tallowby-user-id": "AAAAAAAA-0000-4000-8000-000000000000"}', true);
select is(pg_temp.found(pg_temp.vector_of(1), 0.7, 10), '{same,near,half}',
  'the nearest first, by angle and not by length');
select is(pg_temp.found(pg_temp.vector_of(1), 0.9, 10), '{same,near}', 'a higher threshold finds less');
select is(pg_temp.found(pg_temp.vector_of(1), 1.0, 10), '{same}', 'what reaches the threshold is in');
select is(pg_temp.found(pg_temp.vector_of(1), 0.7, 1), '{same}', 'no more than asked for');
select is(pg_temp.found(pg_temp.vector_of(1), 0.7, 0), '{}', 'none when none is asked for');
select is(pg_temp.found(pg_temp.vector_of(1), 0.7, -5), '{}', 'none for less than none');
select is(pg_temp.found(pg_temp.vector_of(1), -1.0, 2147483647), '{same,near,half,across,against}',
  'zeros never match, whatever the threshold');
select is(pg_temp.found(pg_temp.vector_of(0), -1.0, 10), '{}', 'a query of zeros finds nothing');
select is(pg_temp.found(pg_temp.vector_of(1), 'NaN', 10), '{}', 'a threshold that is no number is never reached');
select is(pg_temp.found(null, 0.7, 10), '{}', 'no query finds nothing');
select throws_ok($$select pg_temp.found('{1,2,3}', 0.7, 10)$$, '22000', null, 'a query of another length is refused');
select throws_ok($$select pg_temp.found('{}', 0.7, 10)$$, '22000', null, 'and so is an empty one');

reset role;
insert into blocks (id, user_id, x_position, y_position, width, height, z_index, block_type, raw_text, embedding,
  created_at, updated_at)
select gen_random_uuid(), 'AAAAAAAA-0000-4000-8000-000000000000', 0, 0, 1, 1, 0, 'text', 'one of many',
  pg_temp.vector_of(1), now(), now()
from generate_series(1, 150);
set local role anon;
select is(cardinality(pg_temp.found(pg_temp.vector_of(1), 0.7, 2147483647)), 100, 'at most a hundred at once');
reset role;

select * from finish();
rollback;
