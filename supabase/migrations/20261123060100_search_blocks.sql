-- The blocks of the asking user that mean what the query means, the nearest first.
--
-- A vector of zeros points nowhere: its distance is not a number, which Postgres holds to be greater than every
-- threshold. Such a query, such a row and every other distance of that sort never match.
--
-- There is no index of vectors on purpose. One over all users finds the nearest of everybody and only then drops those
-- of others, so that of one user's rows next to none would be left; the rows of one user are few enough to be measured
-- one by one.
create function public.search_blocks(
  query_embedding extensions.vector(768),
  match_threshold double precision,
  match_count integer
) returns setof public.blocks
language sql stable security invoker
set search_path = ''
as $$
  select block.*
  from public.blocks as block
  cross join lateral (
    select 1 - (block.embedding::extensions.vector operator(extensions.<=>) query_embedding) as similarity
  ) as match
  where extensions.vector_norm(query_embedding) > 0
    and block.user_id = (select private.requesting_user())
    and block.deleted_at is null
    and block.embedding is not null
    and match.similarity <> 'NaN'
    and match.similarity >= match_threshold
  order by match.similarity desc, block.updated_at desc, block.id
  limit greatest(least(match_count, 100), 0)
$$;
revoke execute on function public.search_blocks(extensions.vector, double precision, integer) from public;
do $$
declare
  role_name name;
begin
  for role_name in select rolname from pg_catalog.pg_roles where rolname = 'authenticated' loop
    execute format(
      'revoke execute on function public.search_blocks(extensions.vector, double precision, integer) from %I',
      role_name
    );
  end loop;
end
$$;
grant execute on function public.search_blocks(extensions.vector, double precision, integer) to anon;
