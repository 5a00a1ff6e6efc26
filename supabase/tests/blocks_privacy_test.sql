-- The public key is in every copy of the program: with it alone, nobody reads, changes, deletes or takes over a row.
begin;
create extension if not exists pgtap with schema extensions;
set local search_path = public, extensions;
select plan(30);

create function pg_temp.request(headers text) returns void language plpgsql as $$
begin
  perform set_config('request.headers', headers, true);
  perform set_config('role', 'anon', true);
end
$$;
create function pg_temp.request_by(user_id text) returns void language plpgsql as $$
begin
  perform pg_temp.request(json_build_object('host', 'x', 'x-tallowby-user-id', user_id)::text);
end
$$;
create function pg_temp.block(id text, user_id text, note text) returns text language sql as $$
  select format(
    'insert into public.blocks (id, user_id, x_position, y_position, width, height, z_index, block_type, raw_text,
       created_at, updated_at)
     values (%L, %L, 1, 2, 3, 4, 5, ''text'', %L, now(), now())', id, user_id, note)
$$;
create function pg_temp.upsert(id text, user_id text, note text) returns text language sql as $$
  select pg_temp.block(id, user_id, note) ||
    ' on conflict (id) do update set user_id = excluded.user_id, raw_text = excluded.raw_text'
$$;

-- Only the rows of this test, whatever the database was seeded with.
delete from blocks;
-- Alice has two rows, Bob has one, and one belongs to nobody.
do $$
begin
  execute pg_temp.block('A0000000-0000-4000-8000-000000000001', 'AAAAAAAA-0000-4000-8000-000000000000', 'alice 1');
  execute pg_temp.block('A0000000-0000-4000-8000-000000000002', 'AAAAAAAA-0000-4000-8000-000000000000', 'alice 2');
  execute pg_temp.block('B0000000-0000-4000-8000-000000000001', 'BBBBBBBB-0000-4000-8000-000000000000', 'bob 1');
  execute pg_temp.block('C0000000-0000-4000-8000-000000000001', '00000000-0000-0000-0000-000000000000', 'nobody');
end
$$;

set local role anon;
select is_empty('select * from blocks', 'no request: no rows');
select pg_temp.request('');
select is_empty('select * from blocks', 'no headers: no rows');
select pg_temp.request('{}');
select is_empty('select * from blocks', 'no header with an id: no rows');
select pg_temp.request_by('not an id');
select is_empty('select * from blocks', 'a header that is no id: no rows, and no error');
select pg_temp.request_by('AAAAAAAA-0000-4000-8000-000000000000'' or true');
select is_empty('select * from blocks', 'an id with more behind it: no rows');
select pg_temp.request_by('{AAAAAAAA-0000-4000-8000-000000000000}');
select is_empty('select * from blocks', 'an id in braces, which Postgres would take: no rows');
select pg_temp.request_by('00000000-0000-0000-0000-000000000000');
select is_empty('select * from blocks', 'the nil id: not even the rows that nobody owns');
select throws_ok(
  pg_temp.upsert('C0000000-0000-4000-8000-000000000002', '00000000-0000-0000-0000-000000000000', 'x'),
  '42501', null,
  'the nil id writes nothing');

select pg_temp.request_by('CCCCCCCC-0000-4000-8000-000000000000');
select is_empty('select * from blocks', 'somebody else: no rows');
select is_empty($$select * from blocks where user_id = 'AAAAAAAA-0000-4000-8000-000000000000'$$,
  'somebody else who asks for the rows of Alice: no rows');
select is_empty($$update blocks set raw_text = 'changed' returning id$$, 'somebody else changes nothing');
select is_empty('delete from blocks returning id', 'somebody else deletes nothing');
select throws_ok('truncate blocks', '42501', null, 'nobody empties the table');
select throws_ok(
  pg_temp.upsert('A0000000-0000-4000-8000-000000000001', 'CCCCCCCC-0000-4000-8000-000000000000', 'taken'),
  '42501', null,
  'an upsert does not take over the row of another by its id');
select throws_ok(
  pg_temp.block('A0000000-0000-4000-8000-000000000001', 'CCCCCCCC-0000-4000-8000-000000000000', 'taken'),
  '23505', null,
  'nor does an insertion');
select throws_ok(
  pg_temp.upsert('A0000000-0000-4000-8000-000000000001', 'AAAAAAAA-0000-4000-8000-000000000000', 'forged'),
  '42501', null,
  'a row that bears the id of Alice is not written by another');
select throws_ok(
  pg_temp.block('D0000000-0000-4000-8000-000000000001', 'AAAAAAAA-0000-4000-8000-000000000000', 'planted'),
  '42501', null,
  'nor is a new one planted on the canvas of Alice');
select throws_ok('alter table blocks disable row level security', '42501', null, 'the policies stay');
select throws_ok('drop trigger make_way_for_block on blocks', '42501', null, 'so does the trigger');

select pg_temp.request_by('BBBBBBBB-0000-4000-8000-000000000000');
select results_eq('select raw_text from blocks', array['bob 1'], 'Bob sees his row');
select throws_ok(
  $$update blocks set user_id = 'AAAAAAAA-0000-4000-8000-000000000000'$$, '42501', null,
  'Bob does not push a row onto the canvas of Alice');
select throws_ok(
  pg_temp.upsert('B0000000-0000-4000-8000-000000000001', 'AAAAAAAA-0000-4000-8000-000000000000', 'pushed'),
  '42501', null,
  'nor by an upsert');
select results_eq('select raw_text from blocks', array['bob 1'], 'and what failed has deleted nothing');

select pg_temp.request_by('aaaaaaaa-0000-4000-8000-000000000000');
select results_eq('select raw_text from blocks order by raw_text', array['alice 1', 'alice 2'],
  'Alice sees her rows, by her id in small letters too, as she left them');
select lives_ok(
  pg_temp.upsert('A0000000-0000-4000-8000-000000000001', 'AAAAAAAA-0000-4000-8000-000000000000', 'edited'),
  'Alice edits');
select results_eq($$delete from blocks where raw_text = 'edited' returning 1$$, array[1], 'Alice deletes');

reset role;
select results_eq('select raw_text from blocks order by raw_text', array['alice 2', 'bob 1', 'nobody'],
  'that is all that has happened');

set local role authenticated;
select throws_ok('select * from blocks', '42501', null, 'the role of accounts has nothing here');
select throws_ok('select * from search_blocks(null, 0, 1)', '42501', null, 'and does not search');
reset role;
select policies_are('public', 'blocks', array['a user has the rows of its own id'], 'one rule, and no other');

select * from finish();
rollback;
