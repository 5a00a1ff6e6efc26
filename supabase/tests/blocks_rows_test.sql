-- What a row is: the keys of the record, whole rows, and nothing that a program could not read back.
begin;
create extension if not exists pgtap with schema extensions;
set local search_path = public, extensions;
select plan(33);

select columns_are('public', 'blocks', array[
  'id', 'user_id', 'x_position', 'y_position', 'width', 'height', 'z_index', 'block_type', 'content', 'raw_text',
  'embedding', 'tags', 'is_todo', 'is_event', 'due_date', 'created_at', 'updated_at', 'synced_at', 'deleted_at',
  'rotation', 'is_bold', 'is_italic', 'is_strikethrough'
], 'every key of the record but the two that stay at home');
select col_is_pk('public', 'blocks', 'id', 'rows are told apart by the id of the block');

-- A record as a request brings it, with some of its members replaced, or left out when they are null.
create function pg_temp.upsert(with_members jsonb) returns text language plpgsql as $$
declare
  record jsonb := jsonb_build_object(
    'id', 'A0000000-0000-4000-8000-000000000001', 'user_id', 'AAAAAAAA-0000-4000-8000-000000000000', 'x_position', -1.5,
    'y_position', 2, 'width', 300, 'height', 60, 'z_index', 9007199254740993, 'block_type', 'text', 'tags', '[]'::jsonb,
    'is_todo', false, 'created_at', '2026-11-23T06:00:00.123Z', 'updated_at', '2026-11-23T06:00:00.456Z', 'rotation', 0
  ) || with_members;
  names text;
  merges text;
begin
  select string_agg(quote_ident(key), ', '), string_agg(format('%1$I = excluded.%1$I', key), ', ')
  into names, merges from jsonb_each(record) as member (key, value) where value <> 'null';
  return format(
    'insert into public.blocks (%1$s) select %1$s from jsonb_populate_record(null::public.blocks, %2$L) '
    'on conflict (id) do update set %3$s', names, record, merges);
end
$$;
create function pg_temp.upsert(text) returns text language sql as $$ select pg_temp.upsert($1::jsonb) $$;

delete from blocks;
select set_config('request.headers', '{"x-tallowby-user-id": "AAAAAAAA-0000-4000-8000-000000000000"}', true);
set local role anon;

select lives_ok(pg_temp.upsert('{}'), 'the smallest record');
select results_eq('select z_index, to_json(updated_at)::text from blocks',
  $$values (9007199254740993::bigint, '"2026-11-23T06:00:00.456+00:00"')$$, 'integers and milliseconds are kept');
select lives_ok(pg_temp.upsert(jsonb_build_object(
  'content', '{"rows": 3, "flag": true, "w": 2.5, "cells": [["a"]], "none": null}'::jsonb, 'raw_text', 'note',
  'embedding', to_jsonb(array_fill(0.1::real, array[768])), 'tags', '["a", "b"]'::jsonb,
  'due_date', '2026-12-24T00:00:00Z', 'deleted_at', '2026-11-23T07:00:00Z', 'block_type', 'a_kind_of_next_year'
)), 'a record with everything, of a kind that nobody here knows');
select results_eq('select content::text, to_json(embedding) ->> 767, tags from blocks',
  $$values ('{"w": 2.5, "flag": true, "none": null, "rows": 3, "cells": [["a"]]}', '0.1', '{a,b}'::text[])$$,
  'the content as it was, the embedding as numbers');
select lives_ok(pg_temp.upsert('{"updated_at": "2026-11-23T08:00:00Z"}'), 'the deletion is undone');
select results_eq('select deleted_at, due_date, raw_text, content, embedding from blocks',
  'select null::timestamptz, null::timestamptz, null::text, null::jsonb, null::real[]',
  'a row is replaced as a whole: what the record leaves out is gone');
select lives_ok(
  $$update blocks set is_bold = true$$, 'changing one column');
select results_eq('select is_bold, block_type from blocks', $$values (true, 'text')$$, 'leaves the others');

select throws_ok(pg_temp.upsert('{"updated_at": null}'), '23502', null, 'no time of change');
select throws_ok(pg_temp.upsert('{"x_position": "NaN"}'), '23514', null, 'a position that is no number');
select throws_ok(pg_temp.upsert('{"width": "Infinity"}'), '23514', null, 'an endless width');
select throws_ok(pg_temp.upsert('{"rotation": "-Infinity"}'), '23514', null, 'an endless turn');
select throws_ok(pg_temp.upsert('{"z_index": 9223372036854775808}'), '22003', null, 'a layer past 64 bits');
select throws_ok(pg_temp.upsert('{"due_date": "infinity"}'), '23514', null, 'a day that never comes');
select throws_ok(pg_temp.upsert('{"deleted_at": "10000-01-01T00:00:00Z"}'), '23514', null, 'a year of five digits');
select throws_ok(pg_temp.upsert('{"created_at": "0044-03-15 12:00:00 BC"}'), '23514', null, 'a year before the first');
select throws_ok(pg_temp.upsert('{"updated_at": "yesterday evening"}'), '22007', null, 'a time in words');
select throws_ok(pg_temp.upsert('{"embedding": [1, 2, 3]}'), '23514', null, 'an embedding of three numbers');
select throws_ok(
  pg_temp.upsert(jsonb_build_object('embedding', to_jsonb(array_fill(null::real, array[768])))), '22004', null,
  'an embedding of nothing');
select throws_ok(
  pg_temp.upsert(jsonb_build_object('embedding', to_jsonb(array_fill('NaN'::real, array[768])))), '22000', null,
  'an embedding that is no number');
select throws_ok(pg_temp.upsert('{"tags": [["a"], ["b"]]}'), '23514', null, 'tags of tags');
select throws_ok(pg_temp.upsert('{"tags": ["a", null]}'), '23514', null, 'a tag that is none');
select throws_ok(pg_temp.upsert('{"content": [1]}'), '23514', null, 'a content that is no object');
select throws_ok(pg_temp.upsert('{"content": "{}"}'), '23514', null, 'a content that is text');
select throws_ok(pg_temp.upsert('{"block_type": ""}'), '23514', null, 'no kind');
select throws_ok(pg_temp.upsert(jsonb_build_object('block_type', repeat('k', 65))), '23514', null,
  'a kind without end');
select throws_ok(pg_temp.upsert(jsonb_build_object('raw_text', repeat('x', 16777217))), '23514', null,
  'a text of more than 16 MiB');
select throws_ok(pg_temp.upsert(jsonb_build_object('tags', array_fill('t'::text, array[1001]))), '23514', null,
  'a thousand and one tags');
select lives_ok(pg_temp.upsert(jsonb_build_object('content', jsonb_build_object('image', repeat('A', 44739244)))),
  'a picture of 32 MiB fits');

-- One long canvas among many short ones, so that the planner has a choice.
reset role;
delete from blocks;
insert into blocks (id, user_id, x_position, y_position, width, height, z_index, block_type, created_at, updated_at,
  deleted_at)
select gen_random_uuid(),
  case when i % 2 = 0 then 'AAAAAAAA-0000-4000-8000-000000000000'::uuid else gen_random_uuid() end, 0, 0, 1, 1, i,
  'text',
  now(), now() - i * interval '1 second', case when i % 7 = 0 then now() end
from generate_series(1, 8000) as i;
analyze blocks;
create function pg_temp.plan_of(query text) returns text language plpgsql as $$
declare
  plan json;
begin
  execute 'explain (format json) ' || query into plan;
  return plan::text;
end
$$;
set local role anon;
select matches(
  pg_temp.plan_of($$select * from public.blocks where user_id = 'AAAAAAAA-0000-4000-8000-000000000000'
    and deleted_at is null and updated_at > now() - interval '1 minute' order by updated_at desc limit 1000$$),
  '"Index Cond": "[^"]*user_id[^"]*updated_at', 'a poll goes by the index to what has changed');
-- Rows as small as these are sorted sooner than fetched one by one. What is asked is whether the index has the order.
set local enable_seqscan = off;
set local enable_bitmapscan = off;
set local enable_sort = off;
select doesnt_match(
  pg_temp.plan_of($$select * from public.blocks where user_id = 'AAAAAAAA-0000-4000-8000-000000000000'
    and deleted_at is null order by updated_at desc, id limit 1000 offset 1000$$),
  'Seq Scan|Sort', 'the parts of a long answer come in order without sorting');
reset role;

select * from finish();
rollback;
