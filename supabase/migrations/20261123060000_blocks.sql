-- The canvas of everybody: one row a block, in the form in which the program keeps it.
--
-- There are no accounts. The public key is in every copy of the program, so it proves nothing; the id of the anonymous
-- user, random and sent in a header, is what opens the rows of that user and no others.

-- The service has this role and this schema; a plain Postgres does not.
do $$
begin
  if not exists (select from pg_catalog.pg_roles where rolname = 'anon') then
    create role anon nologin noinherit;
  end if;
end
$$;
create schema if not exists extensions;
create extension if not exists vector with schema extensions;

-- What requests must not reach by name: only the schema public is served.
create schema private;
grant usage on schema extensions, private to anon;

-- The user whose id the request brings. None for a header that is missing or no id, and for the nil id, which is the
-- owner of blocks that have none: no rows, rather than an error or the rows of everybody.
create function private.requesting_user() returns uuid
language sql stable parallel safe
set search_path = ''
as $$
  select case
    when claimed ~ '^[0-9A-Fa-f]{8}(-[0-9A-Fa-f]{4}){3}-[0-9A-Fa-f]{12}$'
    then nullif(claimed::uuid, '00000000-0000-0000-0000-000000000000')
  end
  from (
    select nullif(current_setting('request.headers', true), '')::json ->> 'x-tallowby-user-id' as claimed
  ) as request
$$;
revoke execute on function private.requesting_user() from public;
grant execute on function private.requesting_user() to anon;

create table public.blocks (
  id uuid primary key,
  user_id uuid not null,
  x_position double precision not null,
  y_position double precision not null,
  width double precision not null,
  height double precision not null,
  z_index bigint not null,
  -- No list of kinds: an older program shows as text what a newer one has made.
  block_type text not null,
  content jsonb,
  raw_text text,
  -- An array and not a vector, because a vector travels as text and the record has numbers.
  embedding real[],
  tags text[],
  is_todo boolean,
  is_event boolean,
  due_date timestamptz,
  created_at timestamptz not null,
  updated_at timestamptz not null,
  synced_at timestamptz,
  deleted_at timestamptz,
  rotation double precision,
  is_bold boolean,
  is_italic boolean,
  is_strikethrough boolean,

  -- One row that cannot be read spoils the whole answer for its user, so what JSON cannot carry stays out.
  constraint blocks_numbers_are_finite check (
    least(x_position, y_position, width, height, rotation) > '-Infinity'
    and greatest(x_position, y_position, width, height, rotation) < 'Infinity'
  ),
  constraint blocks_years_have_four_digits check (
    least(created_at, updated_at, due_date, synced_at, deleted_at) >= '0001-01-01T00:00:00Z'
    and greatest(created_at, updated_at, due_date, synced_at, deleted_at) < '10000-01-01T00:00:00Z'
  ),
  constraint blocks_tags_are_a_list check (
    coalesce(array_ndims(tags), 1) = 1 and array_position(tags, null) is null
  ),
  -- The conversion refuses what is no finite number, and nulls.
  constraint blocks_embedding_is_whole check (extensions.vector_dims(embedding::extensions.vector) = 768),

  -- Sizes. The program takes pictures of 32 MiB, which are a third more as text; nothing else comes near.
  constraint blocks_type_is_short check (char_length(block_type) between 1 and 64),
  constraint blocks_content_is_bounded check (
    jsonb_typeof(content) = 'object' and pg_column_size(content) <= 48 * 1024 * 1024
  ),
  constraint blocks_text_is_bounded check (octet_length(raw_text) <= 16 * 1024 * 1024),
  constraint blocks_tags_are_bounded check (cardinality(tags) <= 1000 and pg_column_size(tags) <= 64 * 1024)
);

-- The pull: one user's rows, the newest first; the id makes the order the same for every part of a long answer.
create index blocks_by_user on public.blocks (user_id, updated_at desc, id);
-- Clearing away what was deleted long ago.
create index blocks_by_deletion on public.blocks (deleted_at) where deleted_at is not null;

-- A row that is written stands in place of the whole row with its id. The record leaves out what has no value, and an
-- upsert leaves alone what the record leaves out: without this a deletion that was undone would stay deleted here.
create function private.make_way_for_block() returns trigger
language plpgsql
set search_path = ''
as $$
begin
  -- As the user of the request: the row of another stays, and the insertion runs into it.
  delete from public.blocks where id = new.id;
  return new;
end
$$;
revoke execute on function private.make_way_for_block() from public;
create trigger make_way_for_block before insert on public.blocks
for each row execute function private.make_way_for_block();

alter table public.blocks enable row level security;
create policy "a user has the rows of its own id" on public.blocks
for all to anon
using (user_id = (select private.requesting_user()))
with check (user_id = (select private.requesting_user()));

-- The service grants everything on a new table to all of its roles.
revoke all on public.blocks from public;
do $$
declare
  role_name name;
begin
  for role_name in select rolname from pg_catalog.pg_roles where rolname in ('anon', 'authenticated') loop
    execute format('revoke all on public.blocks from %I', role_name);
  end loop;
end
$$;
grant select, insert, update, delete on public.blocks to anon;
